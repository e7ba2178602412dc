#include <merodbquery/position_binder.h>

namespace merodbquery {

void PositionBinder::BindTo(soci::statement& statement) {
    for (BoundValue& value : values_) {
        std::visit([&statement](auto& held) { statement.exchange(soci::use(held)); }, value);
    }
}

}  // namespace merodbquery
