#pragma once

/// The statement template that only the service page has.
namespace serverlog::log::adminlog::service {

inline constexpr char kAdvancedSettingChanged[] = "%0% in advanced was changed from %1% to %2%.";

}  // namespace serverlog::log::adminlog::service
