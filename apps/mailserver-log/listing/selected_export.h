#pragma once

#include <json/value.h>
#include <mailserver-log/webapi/adminlog/export_v1.h>
#include <mailserver-log/webapi/emaillog/export.h>
#include <mailserver-log/webapi/securitylog/export.h>
#include <merodbquery/condition.h>

#include <filesystem>
#include <string>
#include <type_traits>

#include "listing/selection.h"

namespace serverlog::program {

/// The method of the web API that exports a store.
template <class Store>
struct ExportMethod;

template <>
struct ExportMethod<AdminStore> {
    using Type = webapi::adminlog::Export_v1;
};

template <>
struct ExportMethod<MailStore> {
    using Type = webapi::emaillog::Export;
};

template <>
struct ExportMethod<SecurityStore> {
    using Type = webapi::securitylog::Export;
};

/// That method with the rows and the order of a selection. The filters of web clients are others,
/// and they count days where a selection counts seconds.
template <class Store>
class SelectedExport : public ExportMethod<Store>::Type {
    using Method = typename ExportMethod<Store>::Type;

 public:
    /// @param selection  its limit and offset have no effect
    ///
    /// Throws CLI::ValidationError if the selection is none for this store.
    explicit SelectedExport(const Selection& selection)
        : Method(Params(selection)),
          condition_(StoreCondition<Store>(selection)),
          sort_(selection.sort) {
        if constexpr (std::is_same_v<Store, AdminStore>) {
            this->SetLocalizedString();
        }
    }

    std::string SortBy(const std::string& /*sort_by*/) override { return sort_; }

    typename Method::ConditionTable AdvanceSearch() override {
        // Any column will do: the table is asked for each one that the store has.
        return {{"date", [this] { return condition_; }}};
    }

 private:
    static Json::Value Params(const Selection& selection) {
        Json::Value params(Json::objectValue);
        params["sort_direction"] = selection.ascending ? "ASC" : "DESC";
        if (!selection.file.empty()) {
            // Not spelt as the method knows the store: it would read the long-term file as well.
            const std::filesystem::path path = std::filesystem::absolute(selection.file);
            params["db_path"] = (path.parent_path() / "." / path.filename()).string();
        }
        return params;
    }

    merodbquery::Condition condition_;
    std::string sort_;
};

}  // namespace serverlog::program
