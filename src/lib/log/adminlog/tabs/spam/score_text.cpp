#include "log/adminlog/tabs/spam/score_text.h"

#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/number_text.h"

#include <charconv>
#include <optional>
#include <string>
#include <system_error>

namespace serverlog::log::adminlog::spam {

namespace {

struct Level {
    char const* setting;
    char const* score;
    Label label;
};

constexpr Label kStrict = Label{"security", "auto_learn_score_strict"};
constexpr Label kStandard = Label{"security", "auto_learn_score_standard"};
constexpr Label kLoose = Label{"security", "auto_learn_score_loose"};

constexpr Level kLevels[] = {
    {"learn_threshold_non_spam", "-1", kStrict}, {"learn_threshold_non_spam", "-0.5", kStandard},
    {"learn_threshold_non_spam", "0.1", kLoose}, {"required_score", "3", kStrict},
    {"required_score", "5", kStandard},          {"required_score", "8", kLoose},
    {"learn_threshold_spam", "12", kStrict},     {"learn_threshold_spam", "10", kStandard},
    {"learn_threshold_spam", "8", kLoose},
};

std::optional<double> Number(std::string const& text) {
    char const* const end = text.data() + text.size();
    double number = 0;
    auto const [stop, error] = std::from_chars(text.data(), end, number);
    return stop == end && error == std::errc() ? std::optional(number) : std::nullopt;
}

}  // namespace

std::string ScoreText(std::string const& member, Json::Value const& object) {
    std::string text = NumberText(member, object);
    std::optional<double> const score = Number(text);
    for (Level const& level : kLevels) {
        if (score && member == level.setting && *score == *Number(level.score)) {
            return LabelText(level.label) + " (" + level.score + ")";
        }
    }
    return text;
}

}  // namespace serverlog::log::adminlog::spam
