#include "log/adminlog/toolkit/settings_page.h"

#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog {

Json::Value DiffSection(Json::Value const& old_info, std::string const& section,
                        Json::Value const& params) {
    Json::Value const settings = TryGetObjectVal(old_info, section);
    return settings.isObject() ? DefaultDiff(settings, params) : Json::Value();
}

StatementRows ChangedLabels(Json::Value const& old_info, Json::Value const& params,
                            Json::Value const& diff, std::vector<Translator> const& translators) {
    StatementRows rows = MuggleTranslate(old_info, params, diff, translators);
    for (StatementRow& row : rows) {
        row.resize(1);
    }
    return rows;
}

}  // namespace serverlog::log::adminlog
