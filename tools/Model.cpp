#include "tools/Model.h"

#include <fmt/format.h>

#include "tools/Text.h"

namespace tovi {

std::string nameOf(const ListKind& kind, const PKCS15Object& object, const Blob& identifier) {
    if (object.recordNumber != noRecord) {
        return fmt::format("{} {}", kind.noun, object.recordNumber);
    }
    if (object.reference != noReference) {
        return fmt::format("{} auth:{}", kind.noun, object.reference);
    }
    return identifier.empty() ? kind.noun
                              : fmt::format("{} with id {}", kind.noun, toHex(identifier));
}

ContainerPointer makeContainer(const Blob& applicationPath) {
    ContainerPointer container(new PKCS15Container(applicationPath));
    container->AddRef();
    return container;
}

}  // namespace tovi
