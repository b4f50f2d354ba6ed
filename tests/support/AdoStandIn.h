#pragma once

#include "tests/support/TableQuery.h"

#include <windows.h>

#include <comdef.h>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace convfile::test {

/// Takes the place of the platform's ADO on this thread: its class factories are registered with
/// COM, its objects write down every call, by the place it has in the object's table of functions,
/// its texts in UTF-8. Holds COM initialised three times: more often than the code under test ends
/// it.
class AdoStandIn {
public:
    /// Rows of an answer; a failing status instead.
    struct Answer {
        HRESULT status = S_OK;
        ULONG fields = 0;
        std::vector<std::vector<_variant_t>> rows;
    };

    AdoStandIn();
    AdoStandIn(const AdoStandIn&) = delete;
    AdoStandIn& operator=(const AdoStandIn&) = delete;
    ~AdoStandIn();

    /// What a call returns, by the beginning of its text; S_OK where nothing is said.
    std::map<std::string, HRESULT> failures;
    /// Answers a statement when its rows are fetched; a failing status already when it is opened.
    std::function<Answer(const std::string& sql)> answer;

    /// The calls since they were last taken.
    std::vector<std::string> TakeCalls();
    /// How many objects are alive.
    int Objects() const { return objects_; }

    struct Object;
    class Factory;

private:
    friend struct Object;

    HRESULT Called(const std::string& call);

    std::vector<std::string> calls_;
    int objects_ = 0;
    std::array<std::unique_ptr<Factory>, 2> factories_;
};

/// Answers statements from these tables.
std::function<AdoStandIn::Answer(const std::string&)> AnswerFrom(std::vector<access::Table> tables);

} // namespace convfile::test
