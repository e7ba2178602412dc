#pragma once

#include <stdexcept>

/// A switch of the effective ids that the system refused. Never leaves serverlog::utils::RunAs.
class runas_error : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};
