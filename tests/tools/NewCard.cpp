#include "NewCard.h"

#include <stdexcept>

namespace tovi::test {
namespace {

Json write(const char* kind, Json info, const Json& more) {
    info.update(more);
    return {{"op", "write"}, {"kind", kind}, {"info", std::move(info)}};
}

}  // namespace

NewCard::NewCard(const std::vector<std::string>& initOptions) {
    std::vector<std::string> arguments = {"init", path()};
    arguments.insert(arguments.end(), initOptions.begin(), initOptions.end());
    if (test::run(arguments).exit != 0) throw std::runtime_error("no new card");
}

Result NewCard::run(std::vector<std::string> arguments, const Surroundings& surroundings) const {
    arguments.insert(arguments.begin(), {"--json", "--card", path()});
    return test::run(arguments, surroundings);
}

Result NewCard::apply(const Json& list, const std::vector<std::string>& options) const {
    std::vector<std::string> arguments = {"apply", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments, {.in = list.dump()});
}

Json NewCard::list() const { return run({"list"}).json(); }

Json writePrivateKey(const std::string& id, const Json& more) {
    return write("privateKey",
                 {{"label", "Key " + id},
                  {"id", id},
                  {"keyType", "RSA"},
                  {"modulusLength", 2048},
                  {"path", {{"path", "4B" + id}}},
                  {"attributes", {{"CKA_SIGN", true}}}},
                 more);
}

Json writePublicKey(const std::string& id, const Json& more) {
    Json operation = writePrivateKey(id, {{"attributes", {{"CKA_VERIFY", true}}}});
    operation["kind"] = "publicKey";
    operation["info"].update(more);
    return operation;
}

Json writeData(const std::string& label, const Json& more) {
    return write("dataObject", {{"label", label}, {"applicationName", "test"}}, more);
}

Json writePin(const std::string& authObjectId, unsigned reference, const Json& more) {
    return write("authObject",
                 {{"type", "pin"},
                  {"label", "PIN " + authObjectId},
                  {"authObjectId", authObjectId},
                  {"pinFlags", {"local", "initialized"}},
                  {"pinType", "ascii-numeric"},
                  {"minLength", 4},
                  {"storedLength", 8},
                  {"reference", reference}},
                 more);
}

}  // namespace tovi::test
