#pragma once

#include <json/value.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/securitylog/security_log.h>

namespace serverlog::program {

/// A row of a trace: an object of `store`, which is the name of the row's store, and its columns.
Json::Value TraceJson(const record::MailLog& row);
Json::Value TraceJson(const record::SecurityLog& row);

}  // namespace serverlog::program
