#pragma once

#include "log/adminlog/toolkit/statement_rows.h"

#include <json/value.h>

#include <string>
#include <vector>

/// What the pages share that list single mails: the antivirus and MCP quarantines and the reported
/// mails.
namespace serverlog::log::adminlog {

/// The mail that `api` gives for the request's "mail_uid", with "force_log", since downloads are
/// logged in any case. Throws Exception<ETag::SDK> when the web API fails.
Json::Value LoadDownloadedMail(char const* api, Json::Value const& params);

/// An object with the mails of the quarantine of `api` as "indexed_mails", by "mail_uid". Throws as
/// LoadDownloadedMail.
Json::Value LoadQuarantine(char const* api);

/// One row for each mail of the request's "mail_uid_list" that the old state of LoadQuarantine
/// knows.
StatementRows QuarantinedMailRows(Json::Value const& old_info, Json::Value const& params,
                                  std::vector<std::string> members);

/// One row: the name of the request's "attachment_id" in the old state's "attachment_list", then
/// `members` of the old state.
StatementRows AttachmentRow(Json::Value const& old_info, Json::Value const& params,
                            std::vector<std::string> members);

}  // namespace serverlog::log::adminlog
