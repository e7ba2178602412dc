#include <merodbquery/position_binder.h>

namespace merodbquery {

void PositionBinder::BindTo(soci::statement& statement) const {
    for (const BoundValue& value : values_) {
        std::visit([&statement](const auto& held) { statement.exchange(soci::use(held)); }, value);
    }
}

}  // namespace merodbquery
