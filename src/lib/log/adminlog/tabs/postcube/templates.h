#pragma once

/// The statement template that only the page of the web mail client has.
namespace serverlog::log::adminlog::postcube {

inline constexpr char kCustomLogo[] = "Postcube has %0% custom logo.";

}  // namespace serverlog::log::adminlog::postcube
