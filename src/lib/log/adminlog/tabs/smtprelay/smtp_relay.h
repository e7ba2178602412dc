#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Who may send mail through this machine without authentication.
namespace serverlog::log::adminlog::smtprelay {

/// The label of the list that "list_type" names, "network" or "domain".
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::smtprelay
