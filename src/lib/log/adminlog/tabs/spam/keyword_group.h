#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The groups of keyword filters.
namespace serverlog::log::adminlog::spam {

/// The "name" of each of the new groups in "group_list".
TranslateSignature TranslateAddKeyGroup;

/// Each of the names in "group_list".
TranslateSignature TranslateDelKeyGroup;

/// By template, for each of "group_list": the group with its old and new status, when the request
/// holds "new_enabled"; "old_name" and "new_name", when both are there and differ. The first goes
/// by the old name, since the renaming is told behind it.
///
/// The request does not say what the status was, and switches are sent when they are turned: the
/// old status is shown as the opposite of the new one.
TranslateSignature TranslateEditKeyGroup;

}  // namespace serverlog::log::adminlog::spam
