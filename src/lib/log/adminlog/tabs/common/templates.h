#pragma once

/// Statement templates that several tabs have.
namespace serverlog::log::adminlog {

/// A setting's label, its old and its new value.
inline constexpr char kSettingChanged[] = "%0% was changed from %1% to %2%.";

}  // namespace serverlog::log::adminlog
