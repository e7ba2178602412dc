#include "utils/files.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <boost/filesystem/operations.hpp>

#include <functional>
#include <vector>

#include "support/child.h"
#include "support/outcome.h"
#include "support/syslog_socket.h"
#include "support/table.h"

namespace serverlog::utils {
namespace {

namespace fs = boost::filesystem;

// On two file systems, in the sandbox as in a plain container.
const std::string kHere = "/tmp/here";
const std::string kThere = "/dev/shm/there";

std::string Outcome(const std::function<void()>& call) {
    return test::OutcomeOf<ETag::FileSystem>(call);
}

void SetTime(const std::string& path, std::time_t time) {
    const utimbuf times = {time, time};
    ASSERT_EQ(utime(path.c_str(), &times), 0) << path;
}

class Files : public testing::Test {
 protected:
    void SetUp() override {
        for (const std::string& folder : {kHere, kThere}) {
            RemoveAll(folder);
            MkDir(folder);
        }
        WriteFileContent(file_, "content");
        MkDir(folder_ + "/below");
        WriteFileContent(folder_ + "/small", "small");
        ASSERT_EQ(symlink("file", link_.c_str()), 0);
        ASSERT_EQ(symlink("nowhere", dangling_.c_str()), 0);
    }

    test::SyslogSocket log_;
    const std::string file_ = kHere + "/file";
    const std::string folder_ = kHere + "/folder";
    const std::string link_ = kHere + "/link";
    const std::string dangling_ = kHere + "/dangling";
    const std::string missing_ = kHere + "/missing";
};

TEST_F(Files, KindsAreToldWithoutALine) {
    const test::Table<std::string, bool, bool, bool> rows = {
        {file_, true, false, true},        {folder_, true, true, false},
        {link_, true, false, true},        {dangling_, false, false, false},
        {missing_, false, false, false},   {missing_ + "/below", false, false, false},
        {"/dev/null", true, false, false},
    };
    for (const auto& [path, exist, directory, regular] : rows) {
        EXPECT_EQ(Exist(path), exist) << path;
        EXPECT_EQ(IsDirectory(path), directory) << path;
        EXPECT_EQ(IsRegularFile(path), regular) << path;
    }
    EXPECT_EQ(Status(folder_), fs::directory_file);
    EXPECT_EQ(Outcome([this] { Status(missing_); }),
              "No such file or directory, " + missing_ + " No such file or directory");
    EXPECT_TRUE(log_.Take().empty());
}

// Each failure is thrown with its code's message and logged once with the same text.
TEST_F(Files, FailuresAreThrownAndLogged) {
    const std::string below_file = file_ + "/below";
    const std::string there = kThere + "/file";
    WriteFileContent(there, "other");
    const std::string more_than_a_buffer(1 << 20, 'x');
    const test::Table<std::function<void()>, std::string> rows = {
        {[&] { Exist(below_file); },
         "Get FileSystem Status failed, " + below_file + " Not a directory"},
        {[&] { FileSize(missing_); },
         "Get FileSize failed, " + missing_ + " No such file or directory"},
        {[&] { FileSize(folder_); },
         "Get FileSize failed, " + folder_ + " Operation not permitted"},
        {[&] { LastWriteTime(missing_); },
         "No such file or directory, " + missing_ +
             " boost::filesystem::last_write_time: No such file or directory: \"" + missing_ +
             "\""},
        {[&] { MkDir(below_file); }, "MkDir failed, " + below_file + " Not a directory"},
        {[&] { Rename(missing_, file_); },
         "Rename failed, " + missing_ + " -> " + file_ + " No such file or directory"},
        {[&] { Rename(file_, there); },
         "Rename(by copying) failed while copying, " + file_ + " -> " + there + " File exists"},
        {[&] { Copy(file_, link_); }, "Failed to Copy, " + file_ + " -> " + link_ + " File exists"},
        {[&] { Copy(folder_, kThere); },
         "Failed to Copy, " + folder_ + " -> " + kThere + " File exists"},
        {[&] { Copy("/dev/null", missing_); },
         "Failed to Copy, /dev/null -> " + missing_ + " Function not implemented"},
        {[&] { CopyFile(file_, there, false); },
         "Failed to CopyFile, " + file_ + " -> " + there + " File exists"},
        {[&] { CopyFile(file_, file_, true); },
         "Failed to CopyFile, " + file_ + " -> " + file_ + " File exists"},
        {[&] { CopyFile(folder_, missing_, true); },
         "Failed to CopyFile, " + folder_ + " -> " + missing_ + " Function not implemented"},
        {[&] { RealPath(dangling_); },
         "Can't resolve real path, " + dangling_ + " No such file or directory"},
        {[&] { AvailableTempFilePath(file_); }, "No available temp file path, " + file_},
        {[&] { WriteFileContent(folder_, ""); },
         "ofsteam is not good while writing content to the file, " + folder_},
        {[&] { WriteFileContent("/dev/full", more_than_a_buffer); },
         "Failed to write content to the file, /dev/full"},
    };
    for (const auto& [call, text] : rows) {
        EXPECT_EQ(Outcome(call), text);
        EXPECT_EQ(log_.TakeErrors(), std::vector<std::string>{text});
    }
    EXPECT_EQ(FileContent(file_) + FileContent(there), "contentother");
}

TEST_F(Files, MissingRightsAreFailures) {
    const std::string locked = kHere + "/locked";
    const std::string inside = locked + "/inside";
    MkDir(locked);
    WriteFileContent(inside, "x");
    const struct {
        mode_t mode;  // of the folder
        std::function<void()> call;
        std::string text;
    } rows[] = {
        {0000, [&] { Exist(inside); },
         "Get FileSystem Status failed, " + inside + " Permission denied"},
        {0000, [&] { IsDirectory(inside); },
         "Get FileSystem Status failed, " + inside + " Permission denied"},
        {0000, [&] { RealPath(inside); },
         "Can't resolve real path, " + inside + " Permission denied"},
        {0500, [&] { RemoveAll(inside); }, "RemoveAll failed, " + inside + " Permission denied"},
        {0500, [&] { Rename(inside, missing_); },
         "Rename failed, " + inside + " -> " + missing_ + " Permission denied"},
        {0500, [&] { Rename(inside, kThere + "/copied"); },
         "Rename(by copying) failed while deleting, " + inside + " -> " + kThere +
             "/copied Permission denied"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(chmod(locked.c_str(), row.mode), 0);
        EXPECT_EQ(test::InChildWithoutRights([&row] { return Outcome(row.call); }), row.text);
        EXPECT_EQ(log_.TakeErrors(), std::vector<std::string>{row.text});
    }
    EXPECT_EQ(FileContent(inside) + FileContent(kThere + "/copied"), "xx");

    const auto silent = [&] {
        chmod(locked.c_str(), 0000);
        return std::string(CanAccess(inside) || Unlink(inside) || !FileContent(inside).empty()
                               ? "got through"
                               : "refused");
    };
    EXPECT_EQ(test::InChildWithoutRights(silent), "refused");
    EXPECT_TRUE(CanAccess(file_));
    EXPECT_TRUE(Unlink(link_));
    EXPECT_FALSE(Unlink(link_));
    EXPECT_TRUE(log_.Take().empty());
}

TEST_F(Files, CopyThatDoesNotFitLeavesNoPart) {
    WriteFileContent(file_, std::string(1 << 20, 'x'));
    const std::string far = kThere + "/far";
    const struct {
        const char* name;
        std::function<void()> copy;
        std::string message;
    } rows[] = {
        {"copy", [&] { CopyFile(file_, far, false); }, "Failed to CopyFile"},
        {"overwrite", [&] { CopyFileWithUpdate(file_, far); }, "Failed to CopyFile"},
        {"move", [&] { Rename(file_, far); }, "Rename(by copying) failed while copying"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto with_limit = [&row] {
            const rlimit limit = {4096, 4096};
            setrlimit(RLIMIT_FSIZE, &limit);
            signal(SIGXFSZ, SIG_IGN);
            return Outcome(row.copy);
        };
        EXPECT_EQ(test::InChild(with_limit),
                  row.message + ", " + file_ + " -> " + far + " File too large");
        EXPECT_TRUE(fs::is_empty(kThere));
        WriteFileContent(far + ".part", "left over");
        row.copy();
        EXPECT_EQ(FileSize(far), 1U << 20);
        RemoveAll(far);
        EXPECT_TRUE(fs::is_empty(kThere));
    }
}

TEST_F(Files, RenameReplacesOnItsFileSystemAndMovesToAnother) {
    const std::string near = kHere + "/near";
    WriteFileContent(near, "old");
    Rename(file_, near);
    EXPECT_EQ(FileContent(near), "content");
    EXPECT_FALSE(Exist(file_));

    const std::string far = kThere + "/far";
    ASSERT_EQ(chmod(near.c_str(), 0640), 0);
    Rename(near, far);
    EXPECT_EQ(FileContent(far), "content");
    EXPECT_FALSE(Exist(near));
    struct stat status = {};
    ASSERT_EQ(stat(far.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);

    Rename(folder_, kThere + "/folder");
    EXPECT_TRUE(fs::is_empty(kThere + "/folder"));
    EXPECT_FALSE(Exist(folder_));
    EXPECT_TRUE(log_.Take().empty());
}

TEST_F(Files, CopyTakesOneThing) {
    Copy(file_, kThere + "/file");
    Copy(link_, kThere + "/link");
    Copy(folder_, kThere + "/folder");
    EXPECT_EQ(FileContent(kThere + "/file"), "content");
    EXPECT_EQ(fs::read_symlink(kThere + "/link"), "file");
    EXPECT_TRUE(fs::is_empty(kThere + "/folder"));
    EXPECT_EQ(FileContent(folder_ + "/small"), "small");
    CopyFile(folder_ + "/small", kThere + "/file", true);
    EXPECT_EQ(FileContent(kThere + "/file"), "small");
}

TEST_F(Files, UpdateKeepsAYoungerTarget) {
    // A target_time of 0: no target.
    const test::Table<const char*, std::time_t, std::time_t, bool> rows = {
        {"younger target", 1000, 1001, false},
        {"equal times", 1000, 1000, true},
        {"older target", 1001, 1000, true},
        {"no target", 1000, 0, true},
    };
    const std::string source = kHere + "/source";
    const std::string target = kHere + "/target";
    for (const auto& [name, source_time, target_time, updated] : rows) {
        for (const bool move : {false, true}) {
            SCOPED_TRACE(std::string(name) + (move ? ", moved" : ", copied"));
            RemoveAll(target);
            if (target_time != 0) {
                WriteFileContent(target, "old");
                SetTime(target, target_time);
            }
            WriteFileContent(source, "new");
            SetTime(source, source_time);
            EXPECT_EQ(LastWriteTime(source), source_time);
            (move ? RenameFileWithUpdate : CopyFileWithUpdate)(source, target);
            EXPECT_EQ(FileContent(target), updated ? "new" : "old");
            EXPECT_EQ(Exist(source), !(move && updated));
        }
    }
}

TEST_F(Files, ContentIsBytes) {
    const std::string bytes("\0\r\n\xff tail", 9);
    WriteFileContent(file_, bytes);
    EXPECT_EQ(FileContent(file_), bytes);
    EXPECT_EQ(FileSize(file_), bytes.size());
    WriteFileContent(file_, "");
    EXPECT_EQ(FileSize(file_), 0U);
    EXPECT_EQ(FileContent(file_) + FileContent(missing_) + FileContent(folder_), "");
    EXPECT_TRUE(log_.Take().empty());
}

TEST_F(Files, FoldersAreMadeAndRemovedWhole) {
    const std::string deep = kHere + "/a/b/c";
    MkDir(deep);
    MkDir(deep);
    EXPECT_TRUE(IsDirectory(deep));
    RemoveAll(kHere + "/a");
    RemoveAll(kHere + "/a");
    EXPECT_FALSE(Exist(kHere + "/a"));
    RemoveAll(link_);
    EXPECT_TRUE(Exist(file_));
    EXPECT_TRUE(log_.Take().empty());
}

TEST_F(Files, RealAndTemporaryPaths) {
    EXPECT_EQ(RealPath("/var/spool/@PostCube-Server/aggr_log/"),
              "/volume1/@PostCube-Server/aggr_log");
    const auto relative = [] {
        return chdir(kHere.c_str()) == 0 ? RealPath("folder/../link")
                                         : std::string("no such folder");
    };
    EXPECT_EQ(test::InChild(relative), file_);

    const std::string path = AvailableTempFilePath(kHere + "/x-%%%%-%%%%.tmp");
    EXPECT_EQ(path.size(), kHere.size() + sizeof "/x-0123-4567.tmp" - 1);
    EXPECT_EQ(path.find('%'), std::string::npos);
    EXPECT_NE(UniquePath("%%%%%%%%"), UniquePath("%%%%%%%%"));
    // Of the sixteen paths of this model one is free.
    const std::string digits = "0123456789abcdef";
    for (const char digit : digits.substr(1)) {
        WriteFileContent(kThere + "/" + digit, "");
    }
    EXPECT_EQ(AvailableTempFilePath(kThere + "/%"), kThere + "/0");
}

TEST(FilePaths, Parts) {
    EXPECT_EQ(FileName("/var/log/"), ".");
    EXPECT_EQ(FileStem("/a/b.tar.gz"), "b.tar");
    EXPECT_EQ(FileExtension("/a/b.tar.gz"), "gz");
    EXPECT_EQ(FileExtension("/a/b"), "");
    EXPECT_EQ(FileParentFolder("/a/b"), "/a");
}

}  // namespace
}  // namespace serverlog::utils
