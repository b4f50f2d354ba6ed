#pragma once

#include "export/Survey.h"

#include <cstdint>
#include <span>
#include <vector>

namespace convfile::exports {

/// How a set-up has to do with a place; each of its places once.
struct Visit {
    enum Kind : std::uint8_t { StandsOn, Directs, Sights };

    std::uint32_t occupation;
    Kind kind; ///< a place that is sighted and that a direction goes to is sighted
};

/// The set-ups with sights, by the places that they have to do with.
///
/// One that shares fewer than two places with others, or with what is given, can never be placed by
/// them and is not listed: a thousand set-ups that have one name in common become a thousand groups
/// in as many steps.
class Visits {
public:
    explicit Visits(const Survey& survey);

    std::span<const Visit> Of(std::uint32_t place) const {
        return std::span(visits_).subspan(first_[place], first_[place + 1] - first_[place]);
    }

private:
    std::vector<Visit> visits_; ///< place by place
    std::vector<std::uint32_t> first_;
};

} // namespace convfile::exports
