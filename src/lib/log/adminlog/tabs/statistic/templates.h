#pragma once

/// The statement template that the function of the mail monitor knows.
namespace serverlog::log::adminlog::statistic {

inline constexpr char kReportExported[] = "Report of %0% was exported.";

}  // namespace serverlog::log::adminlog::statistic
