#pragma once

#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/db/union_all_select.h>
#include <mailserver-log/export.h>
#include <mailserver-log/webapi/base_api.h>
#include <mero/api_parameter.h>
#include <merodbquery/condition.h>

#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace serverlog::webapi {

/// A method that lists or exports the rows of a log store.
///
/// Parameters that all of them share, each optional; one of the wrong type counts as missing:
///
/// | key              | type   | default | meaning                                               |
/// |------------------|--------|---------|-------------------------------------------------------|
/// | `offset`         | number | 0       | rows to skip; see LisTable for one behind the end     |
/// | `limit`          | number | -1      | the most rows to give; -1 means all                   |
/// | `action`         | text   |         | "find" for a simple search, any other text for an     |
/// |                  |        |         | advance search                                        |
/// | `query`          | text   |         | what a simple search looks for, in many columns       |
/// | `sort_by`        | text   | "date"  | field to sort by                                      |
/// | `sort_direction` | text   | "DESC"  | "ASC" for ascending, any other text for descending    |
/// | `date_from`      | text   |         | first day, as "2026/11/22"; advance search only       |
/// | `date_to`        | text   |         | as above, but only the first second of that day is    |
/// |                  |        |         | included: clients that mean the whole day send the    |
/// |                  |        |         | next one                                              |
///
/// Without `action` a search is a simple one when there is a `query`, else an advance search, which
/// takes the rows that fulfil all of the method's own filters.
class MAILSERVER_LOG_EXPORT BaseDBQueryAPI : public BaseAPI {
 public:
    /// From a column's name to the function that makes its condition. Functions refer to the method
    /// object that made the table.
    using ConditionTable = std::map<std::string, std::function<merodbquery::Condition()>>;

    using BaseAPI::BaseAPI;

    /// Reads the shared parameters, then those of the method. Never fails.
    std::tuple<int, Json::Value> ReadRequest() override;
    std::tuple<int, Json::Value> ReadRequestFromJson() override;

    /// Reads the parameters of the method, in the one and the other form. Does nothing here.
    virtual std::tuple<int, Json::Value> ReadAdvanceRequest();

    /// The name is an old one: methods read their parameters here in both forms.
    virtual std::tuple<int, Json::Value> ReadAdvanceRequestFromJson();

    /// The column that a client's field is sorted by; a name that is none of its fields is sorted
    /// by a default.
    virtual std::string SortBy(const std::string& sort_by) = 0;

    /// The conditions of a simple search, of which a row has to fulfil one; no conditions for an
    /// empty `query`.
    virtual ConditionTable SimpleSearch() = 0;

    /// The conditions of an advance search, all of which a row has to fulfil.
    virtual ConditionTable AdvanceSearch() = 0;

 protected:
    /// What a list gives: the number of rows found, and those of the page.
    template <class DB>
    using Rows = std::tuple<unsigned long, std::vector<typename db::StoreTraits<DB>::Record>>;

    ///@{
    /// A parameter of either form, without validator.
    MERO::APIParameter<std::string> GetAPIParam(const std::string& key);
    MERO::APIParameter<int> GetAPIIntParam(const std::string& key);
    ///@}

    ///@{
    /// Takes a parameter over into a field, which keeps what it has when the parameter is invalid.
    void ReadParam(const std::string& key, std::string& field);
    void ReadParam(const std::string& key, int& field);
    ///@}

    /// Reads the parameters that all methods have. Always 0.
    std::tuple<int, Json::Value> ReadCommonRequest();

    /// Whether each column has a text of its own to look for. The parameter `action` tells, "find"
    /// for no; without it an advance search is what has no `query`.
    bool IsAdvanceSearch() const;

    /// The column to sort by; empty unless it is one of `columns`.
    std::string GetSort(const std::vector<std::string>& columns);

    /// The condition of the whole search. Of the method's table only entries for `columns` count.
    merodbquery::Condition GetCond(const std::vector<std::string>& columns);

    /// The condition on the column "date" that `date_from` and `date_to` make.
    merodbquery::Condition DateCondition() const;

    /// Lists the page that the request asks for, as root. `reason` names the work in the line that
    /// is logged where the system refuses that. Throws as internal::WithStoreAsRoot, LisTable and
    /// the conditions do.
    template <class DB>
    Rows<DB> ListStore(const std::string& db_path, const std::string& reason);

    /// Prepares all rows that the request asks for, without a page, for reading one by one.
    ///
    /// @param row  gets each row, a record or a view of it; must outlive the result, as `store`
    ///             must
    template <class DB, class Row>
    db::UnionAllSelectQuery StepStore(DB& store, Row& row);

    ///@{
    /// A parameter that all methods have, under its own name.
    int offset_ = 0;
    long limit_ = -1;
    std::string query_;  ///< trimmed and in upper case
    std::string action_;
    std::string sort_by_ = "date";
    std::string sort_direction_ = "DESC";
    std::string date_from_;
    std::string date_to_;
    ///@}
};

}  // namespace serverlog::webapi
