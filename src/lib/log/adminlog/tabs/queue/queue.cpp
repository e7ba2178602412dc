#include "log/adminlog/tabs/queue/queue.h"

#include "log/adminlog/tabs/queue/templates.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::queue {

namespace {

StatementRow MailValues(Json::Value const& mail) {
    return {GetKeyVal(mail, "sender"), GetKeyVal(mail, "recipient"),
            GetKeyVal(mail, "date") + " " + GetKeyVal(mail, "time")};
}

}  // namespace

Json::Value QueueInfo(Json::Value const& /*params*/) {
    Json::Value query;
    query["search_type"] = "all";
    query["action"] = "list";
    return IndexedEntries(LoadOldState("MERO.PostCubeServer.Queue", "list", query)["items"], "id");
}

StatementRows TranslateQueueOperation(std::string const& statement, Json::Value const& old_info,
                                      Json::Value const& params, Json::Value const& /*diff*/,
                                      Json::Value const& /*body*/) {
    if (statement != kMailDeleted && statement != kMailResent) {
        return Ignore();
    }
    return IdentifiedRows(params["queue_list"], "id", old_info, MailValues);
}

}  // namespace serverlog::log::adminlog::queue
