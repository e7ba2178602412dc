#include "log/adminlog/tabs/migrate/keyword.h"

#include "log/adminlog/tabs/migrate/old_task.h"
#include "log/adminlog/tabs/migrate/templates.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::migrate {

namespace {

constexpr Word kTargets[] = {
    {"keyword", Label{"log", "attr_keyword"}},
    {"exception", Label{"schedule", "clean_recycle_reserve_file_policy_title"}},
};

/// One row for each text of `words`: list, word, task's name.
StatementRows WordRows(Json::Value const& words, Json::Value const& params) {
    std::string const target = WordText(GetKeyVal(params, "target"), kTargets);
    std::string const task = GetKeyVal(params, "task_name");
    return EntryRows(words, [&target, &task](Json::Value const& word) {
        return StatementRow{target, word.asString(), task};
    });
}

}  // namespace

Json::Value KeywordInfo(Json::Value const& params) {
    Json::Value query;
    query["target"] = TryGetObjectVal(params, "target");
    return LoadTask("list_keyword", params, query);
}

Json::Value DiffKeyword(Json::Value& old_info, Json::Value& params) {
    return TextListDiff(TryGetObjectVal(old_info, "keyword_list"),
                        TryGetObjectVal(params, "items"));
}

StatementRows TranslateKeywordEdit(std::string const& statement, Json::Value const& /*old_info*/,
                                   Json::Value const& params, Json::Value const& diff,
                                   Json::Value const& /*body*/) {
    if (statement == kKeywordAdded) {
        return WordRows(diff[kAddList], params);
    }
    if (statement == kKeywordRemoved) {
        return WordRows(diff[kDelList], params);
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::migrate
