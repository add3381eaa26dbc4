#include "tests/coders/ScriptedHandler.h"

namespace tovi {

struct ProfileDFHandler::State {
    Blob path;
    std::vector<Blob> records;
};

namespace test {

HandlerScript& handlerScript() {
    static HandlerScript script;
    return script;
}

}  // namespace test

namespace {

bool answerTo(const test::HandlerScript::Call& call) {
    test::HandlerScript& script = test::handlerScript();
    script.calls.push_back(call);
    if (script.before) script.before();
    return script.answer;
}

}  // namespace

ProfileDFHandler::ProfileDFHandler(const Blob&) : state_(std::make_unique<State>()) {}
ProfileDFHandler::~ProfileDFHandler() = default;

void ProfileDFHandler::BeginRound() {}
std::size_t ProfileDFHandler::RecordCount() const { return 0; }
void ProfileDFHandler::SetFilePath(const Blob& path, const char*) { state_->path = path; }
void ProfileDFHandler::ReadFile(ISCardOS*, unsigned char, bool) {
    state_->records = test::handlerScript().files[state_->path];
}
const std::vector<Blob>& ProfileDFHandler::records() const { return state_->records; }

bool ProfileDFHandler::WriteSequence(ISCardOS* os, const Blob& record, unsigned long& index) {
    const bool answer = answerTo({os, {}, record});
    index = test::handlerScript().position.value_or(index);
    return answer;
}

bool ProfileDFHandler::UpdateSequence(ISCardOS* os, unsigned long index, const Blob& record) {
    return answerTo({os, index, record});
}

bool ProfileDFHandler::DeleteSequence(ISCardOS*, unsigned long) {
    return test::handlerScript().answer;
}

}  // namespace tovi
