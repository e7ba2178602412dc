#include <gmock/gmock.h>
#include <mero/notification.h>
#include <syslog.h>

#include <filesystem>
#include <string>

#include "support/syslog_socket.h"
#include "support/text_file.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kTag[] = "POSTCUBE_SERVER_ARCHIVE_SHARE_REMOVE";
const std::string kTexts = PROJECT_SOURCE_DIRECTORY "/texts/";
const std::string kHooks = "/var/packages/PostCube-Server/etc/notify.d/";

class Notification : public testing::Test {
 protected:
    Notification() {
        std::filesystem::remove_all(kHooks);
        std::filesystem::create_directories(kHooks);
        MLIBCSzHashSetValue(&variables_, "%SHARED_FOLDER%", "/old");
        MLIBCSzHashSetValue(&variables_, "%SHARED_FOLDER%", "/volume1/a \"ö\" %TAG% $(id)");
        MLIBCSzHashSetValue(&variables_, "%TAG%", "other");
    }
    ~Notification() override { MLIBCSzHashFree(variables_); }

    int Send(const char* tag = kTag, const std::string& texts = kTexts) {
        return MEROSysNotifySendNotificationCustomized(tag, texts.c_str(), "/none", variables_, 0);
    }

    /// Installs a hook that notes what it was given in /tmp/<name>, and then does `script`.
    static void Install(const std::string& name, const std::string& script = "") {
        std::filesystem::remove("/tmp/" + name);
        test::WriteTextFile(
            kHooks + name,
            "#!/bin/sh\n{ echo \"$*\"; cat; } >'/tmp/" + name + "'\n" + script + "\n", 0755);
    }

    static std::string Noted(const std::string& name) { return test::ReadTextFile("/tmp/" + name); }

    MLIBCSzHash* variables_ = MLIBCSzHashAlloc(1024);
    test::SyslogSocket log_;
};

TEST_F(Notification, ReachesTheLogAndEveryHook) {
    Install("first hook");
    Install("second");
    test::WriteTextFile(kHooks + "no executable", "#!/bin/sh\ntouch /tmp/touched\n", 0644);
    std::filesystem::create_directory(kHooks + "folder");
    EXPECT_EQ(1, Send());
    for (const char* hook : {"first hook", "second"}) {
        EXPECT_EQ(Noted(hook),
                  std::string(kTag) +
                      "\n{\"%SHARED_FOLDER%\":\"/volume1/a \\\"\\u00f6\\\" %TAG% $(id)\","
                      "\"%TAG%\":\"other\"}");
    }
    EXPECT_FALSE(std::filesystem::exists("/tmp/touched"));
    EXPECT_THAT(log_.TakeTexts(LOG_MAIL | LOG_NOTICE),
                ElementsAre("notification " + std::string(kTag) +
                            ": Log archiving has been turned off: Logs can no longer be archived"
                            " because the folder /volume1/a \"ö\" %TAG% $(id) does not exist."
                            " Archiving has been turned off. Choose another folder and turn"
                            " archiving on again."));
}

TEST_F(Notification, AHookThatFailsOrHangsDoesNotStopTheOthers) {
    Install("1 fails", "exit 3");
    Install("2 hangs", "sleep 1000");
    test::WriteTextFile(kHooks + "3 no program", "nothing", 0755);
    Install("4 works");
    EXPECT_EQ(1, Send());
    EXPECT_THAT(Noted("4 works"), HasSubstr(kTag));
    EXPECT_THAT(log_.TakeTexts(LOG_MAIL | LOG_WARNING),
                ElementsAre(HasSubstr("notify.d/1 fails: ended with status 3"),
                            HasSubstr("notify.d/2 hangs: took too long and was killed"),
                            HasSubstr("notify.d/3 no program: ended with status 127")));
}

TEST_F(Notification, GoesOutWithoutATextAndWithoutHooks) {
    EXPECT_EQ(1, Send("UNKNOWN"));
    std::filesystem::remove_all(kHooks);
    EXPECT_EQ(1, Send(kTag, "/no folder"));
    EXPECT_THAT(log_.TakeTexts(LOG_MAIL | LOG_NOTICE),
                ElementsAre("notification UNKNOWN: UNKNOWN",
                            std::string("notification ") + kTag + ": " + kTag));
}

TEST_F(Notification, RefusesWhatItCannotSend) {
    std::filesystem::remove_all(kHooks);
    test::WriteTextFile(kHooks.substr(0, kHooks.size() - 1), "no folder");
    EXPECT_EQ(0, Send());
    std::filesystem::remove(kHooks.substr(0, kHooks.size() - 1));
    EXPECT_EQ(0, Send(""));
    EXPECT_EQ(0, MEROSysNotifySendNotificationCustomized(kTag, "", "", nullptr, 0));
    EXPECT_EQ(0, MEROSysNotifySendNotificationCustomized(kTag, "", "", variables_, 1));
    EXPECT_EQ(-1, MLIBCSzHashSetValue(&variables_, nullptr, ""));
    EXPECT_EQ(nullptr, MLIBCSzHashAlloc(0));
}

}  // namespace
