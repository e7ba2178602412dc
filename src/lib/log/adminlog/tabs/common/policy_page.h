#pragma once

#include "log/adminlog/toolkit/statement_rows.h"
#include "log/adminlog/toolkit/translator.h"

#include <json/value.h>

#include <string>
#include <vector>

/// What the pages of user policies and of delegation policies share: a policy is a record with
/// "id", "name", settings, and the users and groups that it applies to as "members".
namespace serverlog::log::adminlog {

/// All policies of `api` by "id". Throws Exception<ETag::SDK> when the web API fails.
Json::Value PoliciesById(char const* api);

/// The record that `api` gives for the request's "id". Throws as PoliciesById.
Json::Value PolicyRecord(char const* api, Json::Value const& params);

/// The change map of a policy; its "members" count as changed when others are in the list, whatever
/// their order.
Json::Value DiffPolicyRecord(Json::Value const& old_info, Json::Value const& params);

/// The name of each policy in the request's "ids" that the old state of PoliciesById knows.
StatementRows DeletedPolicyNames(Json::Value const& old_info, Json::Value const& params);

/// The templates that tell the changes of one policy.
struct PolicyTemplates {
    char const* setting_changed;  ///< label, policy's name, old, new
    char const* members_edited;   ///< policy's name
    char const* renamed;          ///< old name, new name
};

/// The rows of one of `templates` for a changed policy, which goes by its old name.
StatementRows TranslatePolicyEdit(PolicyTemplates const& templates, std::string const& statement,
                                  Json::Value const& old_info, Json::Value const& params,
                                  Json::Value const& diff,
                                  std::vector<Translator> const& translators);

}  // namespace serverlog::log::adminlog
