// The engine of a build without one: every database is one whose driver is missing.

#include "database/Engine.h"

namespace convfile::database {

namespace {

class NoConnection final : public Connection {
public:
    Status Probe(const std::string&) override {
        problem_ = "databases cannot be read: this build has no reader for them";
        return kFailed;
    }
    Status Close() override { return kFailed; }
    void Open(const std::string&) override { throw EngineError("there is no engine"); }
};

} // namespace

Status StartEngine() {
    return kOk;
}

void StopEngine() {}

std::shared_ptr<Connection> NewConnection() {
    return std::make_shared<NoConnection>();
}

std::shared_ptr<Recordset> NewRecordset() {
    return nullptr;
}

std::string PlatformErrorText() {
    return {};
}

} // namespace convfile::database
