#pragma once

/// The statement template that the functions of the log page know.
namespace serverlog::log::adminlog::logs {

inline constexpr char kExported[] = "%0% was exported.";

}  // namespace serverlog::log::adminlog::logs
