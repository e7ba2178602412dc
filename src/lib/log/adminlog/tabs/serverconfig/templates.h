#pragma once

/// The statement template that the function of the server configuration page knows.
namespace serverlog::log::adminlog::serverconfig {

inline constexpr char kExchangeConfigImported[] =
    "Microsoft Exchange Server configuration %0% was imported.";

}  // namespace serverlog::log::adminlog::serverconfig
