#include <iostream>
#include "tovi/card/CardFolder.h"
#include "tovi/card/ISO7816CardOS.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"

int main(int argc, char** argv) try {
    tovi::CardFolder folder(argc > 1 ? argv[1] : "tests/cards/rich", {.mode = tovi::CardFolder::Mode::readOnly});
    tovi::VirtualCardChannel channel(folder.card());
    tovi::ISO7816CardOS card(channel);
    tovi::PKCS15Container container(tovi::PKCS15_DF);
    container.readFromCard(&card);
    for (const auto& key : container.getPrivateKeyInfos())
        std::cout << key.recordNumber << ' ' << std::string(key.label.begin(), key.label.end()) << '\n';
} catch (const tovi::Exception& failure) {
    std::cerr << failure.GetMessage() << '\n';
    return 1;
}
