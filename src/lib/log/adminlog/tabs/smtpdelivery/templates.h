#pragma once

/// The statement templates that the functions of the delivery page know.
namespace serverlog::log::adminlog::smtpdelivery {

inline constexpr char kRelayServersEdited[] = "%0% of multiple relay servers was edited.";
inline constexpr char kRelayHostChanged[] =
    "%0% of the single relay host was changed from %1% to %2%.";
inline constexpr char kRelayHostSecretChanged[] = "%0% of the single relay host was changed.";

}  // namespace serverlog::log::adminlog::smtpdelivery
