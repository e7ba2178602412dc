#include "support/operation_fixture.h"
#include "support/text_file.h"

#include <gmock/gmock.h>
#include <mero/api_runner.h>

#include <string>

namespace {

using test::Statement;
using testing::ElementsAre;
using testing::IsEmpty;

class HandlerExecutableTest : public test::OperationTest {
 protected:
    static void Install(std::string const& api, std::string const& script) {
        test::WriteTextFile(std::string(MERO::APIRunner::kHandlerFolder) + "/" + api,
                            "#!/bin/sh\n" + script, 0755);
    }
};

// What the handler answers depends on all that it is given: the method, and the mail of the request
// on standard input.
TEST_F(HandlerExecutableTest, GivesTheOldStateOfAPage) {
    Install("MERO.PostCubeServer.Security.MCPQuarantine", R"(
read -r params
[ "$1 $2 $3" = "get 1 admin" ] && [ "$params" = '{"mail_uid":7}' ] || exit 1
cat <<END
{"success":true,"data":{"subject":"Plän","to":"carol@example.com","time":"2026-11-21 09:00:00",
 "attachment_list":[{"id":1,"name":"plan.pdf"}]}}
END
)");
    test::OperationCall call;
    call.operation = "Webapi_MCPQuarantine_DownloadAttachment_v1";
    call.params["mail_uid"] = 7;
    call.params["attachment_id"] = 1;
    call.error = 117;
    auto const result = Run(call);
    EXPECT_THAT(result.statements,
                ElementsAre(Statement{11,
                                      "Attachment [plan.pdf] of mail [Plän] in MCP quarantine "
                                      "sent to [carol@example.com] on [2026-11-21 09:00:00], "
                                      "was downloaded."}));
    EXPECT_THAT(result.errors, IsEmpty());

    // The handler refuses this one; nothing is known of the mail, and the call failed.
    call.params["mail_uid"] = 8;
    EXPECT_THAT(Run(call).statements, IsEmpty());
}

}  // namespace
