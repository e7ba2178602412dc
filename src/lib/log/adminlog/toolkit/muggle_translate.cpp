#include "log/adminlog/toolkit/muggle_translate.h"

#include <set>

namespace serverlog::log::adminlog {

namespace {

std::string Format(Translator const& translator, std::string const& member,
                   Json::Value const& object) {
    return translator.format ? translator.format(member, object) : object[member].asString();
}

}  // namespace

StatementRows MuggleTranslate(Json::Value const& old_info, Json::Value const& params,
                              Json::Value const& diff, std::vector<std::string> const& args,
                              std::vector<Translator> const& translators) {
    StatementRows rows;
    std::set<std::string> labels;
    for (Translator const& translator : translators) {
        if (!diff.isMember(translator.key) || labels.count(translator.label) != 0) {
            continue;
        }
        std::string const old_text = Format(translator, diff[translator.key].asString(), old_info);
        std::string const new_text = Format(translator, translator.key, params);
        if (old_text == new_text) {
            continue;  // changed as JSON but not as the administrator reads it
        }
        StatementRow row = {translator.label};
        row.insert(row.end(), args.begin(), args.end());
        row.push_back(old_text);
        row.push_back(new_text);
        rows.push_back(row);
        labels.insert(translator.label);
    }
    return rows;
}

StatementRows MuggleTranslate(Json::Value const& old_info, Json::Value const& params,
                              Json::Value const& diff, std::vector<Translator> const& translators) {
    return MuggleTranslate(old_info, params, diff, {}, translators);
}

}  // namespace serverlog::log::adminlog
