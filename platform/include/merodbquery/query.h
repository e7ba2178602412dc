#pragma once

#include <merodbquery/position_binder.h>
#include <merodbquery/session.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace merodbquery {

/// One statement with the objects that its values come from and its rows go to. Can be run again;
/// each run composes and prepares it anew.
class Query {
 public:
    /// @param session  copied, so that the connection outlives the query
    explicit Query(const Session& session);

    /// Also between running and fetching.
    Query(Query&&) = default;

    /// Binds what soci::into(object[, indicator]) gives: each fetched row goes to `object`, which
    /// must live as long as rows are fetched. Several elements take the columns in order. The first
    /// one bound after a run replaces all that were bound before it.
    template <class T, class Indicator>
    void Bind(const soci::details::into_container<T, Indicator>& element) {
        AddElement([element](soci::statement& statement) { statement.exchange(element); });
    }

    /// Binds what soci::use(object[, indicator][, name]) gives: the value is read from `object` at
    /// each run, so that must live until then; nothing is written back. Replaces as above.
    template <class T>
    void Bind(const soci::details::use_container<T, soci::details::no_indicator>& element) {
        // The element refers to a name that lives no longer than the call, so it is built again.
        AddElement([&object = element.t, name = element.name](soci::statement& statement) {
            statement.exchange(
                soci::details::use_container<const T, soci::details::no_indicator>(object, name));
        });
    }

    /// The same with an indicator, which has to live as long.
    template <class T, class Indicator>
    void Bind(const soci::details::use_container<T, Indicator>& element) {
        AddElement([&object = element.t, &indicator = element.ind,
                    name = element.name](soci::statement& statement) {
            statement.exchange(
                soci::details::use_container<const T, Indicator>(object, indicator, name));
        });
    }

    /// Binds what is bound to another query, in place of all that was bound.
    void BindAs(const Query& other) { elements_ = other.elements_; }

    /// Runs the query and, where it fetches data, takes the first row.
    ///
    /// @return false when it failed (busy, full, constraint, bad statement, session not good),
    ///         with the reason in ErrorText(); throws only what is no soci::soci_error
    virtual bool Execute();

    virtual ~Query() = default;

    /// Composes the statement's text. Values that stand in it as placeholders go to the binder.
    virtual std::string GetQuery() = 0;

    /// True when the statement yields rows.
    virtual bool IsFetchingDataQuery() const = 0;

    /// Composes, prepares, binds and runs the statement.
    ///
    /// @param fetch_first  true takes the first row at once (a statement without rows needs it
    ///                     too); false leaves all rows to Fetch
    /// @return true when a row was taken; soci::soci_error and what the bound objects'
    ///         conversions throw pass on
    bool PrepareAndExecute(bool fetch_first);

    /// Why the last Execute or Fetch failed; empty when it did not.
    const std::string& ErrorText() const { return error_text_; }

 protected:
    /// Runs a statement that yields no rows and stays prepared in the session for the next run.
    /// soci::soci_error and what the bound objects' conversions throw pass on.
    ///
    /// @param text  the statement; the binder has no part in it
    void RunKept(const std::string& text);

    /// Takes the next row into the bound objects. False at the end of the rows, at once when the
    /// session is not good or the query was not run. Exceptions pass on as above.
    bool FetchNext();

    /// What ErrorText() is to give.
    void SetErrorText(std::string text) { error_text_ = std::move(text); }

    /// The result of the last fetch.
    bool LastFetch() const { return last_fetch_; }

    /// Where GetQuery() registers values. Emptied before each run.
    PositionBinder& Binder() { return binder_; }

 private:
    // Shared with a kept statement that they are bound to, which knows them by their address.
    using Elements = std::vector<std::function<void(soci::statement&)>>;

    void BeginRun();
    void AddElement(std::function<void(soci::statement&)> element);

    // The order matters: the statement goes first, then what it points at, then its connection.
    Session session_;
    PositionBinder binder_;
    std::shared_ptr<Elements> elements_ = std::make_shared<Elements>();
    std::unique_ptr<soci::statement> statement_;
    bool was_run_ = false;
    bool last_fetch_ = false;
    bool replace_elements_ = false;
    std::string error_text_;
};

}  // namespace merodbquery
