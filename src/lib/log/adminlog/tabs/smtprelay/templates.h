#pragma once

/// The statement template that the function of the relay control page knows.
namespace serverlog::log::adminlog::smtprelay {

inline constexpr char kListEdited[] = "%0% at relay control was edited.";

}  // namespace serverlog::log::adminlog::smtprelay
