#pragma once

namespace merodbquery {

/// Marks a record whose row can be written back. What is written, the record itself says.
class Updatable {
 public:
    virtual ~Updatable() = default;
};

}  // namespace merodbquery
