#pragma once

/// Marks what the shared library shows to its callers; everything else stays hidden.
#define MAILSERVER_LOG_EXPORT __attribute__((visibility("default")))
