#pragma once

/// The statement templates that the functions of the server list know.
namespace serverlog::log::adminlog::serverlist {

inline constexpr char kServerAdded[] = "Server: %0% storage: %1% was added to cluster: %2%.";
inline constexpr char kServerRemoved[] = "%0% was removed from cluster.";
inline constexpr char kClusterChanged[] = "%0% of cluster was changed from %1% to %2%.";

}  // namespace serverlog::log::adminlog::serverlist
