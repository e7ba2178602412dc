#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The rules of the MCP page, which go by their names.
namespace serverlog::log::adminlog::mcp {

/// The rules by "name" as "indexed_rules". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature McpRuleInfo;

/// Those of the request's "edit_list" that differ from the rule that "origin_name" names, the name
/// before the call (list_diff.h). An entry without it is not renamed and goes by "name".
DiffSignature DiffMcpRule;

/// The parts of a mail that a rule looks at, in words with ", " between them; the value is a list
/// of words or one text with commas between them. "Unknown" stands for a word that is not known and
/// for no word at all.
FormatSignature TargetText;

/// How a rule compares, in words; empty for any other value.
FormatSignature RelationText;

/// The "name" of each of the new rules in "rule_list".
TranslateSignature TranslateMcpRuleAdd;

/// Each of the names in "delete_list".
TranslateSignature TranslateMcpRuleDel;

/// By template: the changed fields of each rule, which goes by its old name there, since the
/// renaming is told behind them; the old and new name of each rule that was renamed.
TranslateSignature TranslateMcpRuleEdit;

}  // namespace serverlog::log::adminlog::mcp
