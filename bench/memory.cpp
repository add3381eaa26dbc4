// What the model of a card costs in memory: cards with 1,000 objects of one kind are read, and what
// then lives on the heap is divided by their number. Ids have 20 octets and labels 16. Everything
// the container holds counts: decoded records, infos, rows of the table, key containers, file
// layouts, and the room that growing vectors keep in reserve.
#include <malloc.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "bench/HeldContainer.h"
#include "bench/SyntheticCard.h"
#include "tovi/card/ISO7816CardOS.h"
#include "tovi/pkcs15/PKCS15.h"

namespace {

/// Octets of the heap in use, with the size field that glibc keeps in front of each block.
std::size_t liveOctets = 0;

std::size_t sizeOfBlock(void* block) { return malloc_usable_size(block) + sizeof(std::size_t); }

void* allocate(std::size_t size) {
    void* block = std::malloc(size);
    if (!block) throw std::bad_alloc();
    liveOctets += sizeOfBlock(block);
    return block;
}

void release(void* block) noexcept {
    if (!block) return;
    liveOctets -= sizeOfBlock(block);
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }

namespace {

using tovi::bench::CardContents;

constexpr std::size_t count = 1000;
constexpr double allowedForPrivateKey = 2048;

/// Octets for one object on a card with `contents`.
double octetsForEach(const CardContents& contents) {
    tovi::VirtualCard card = tovi::bench::syntheticCard(contents);
    tovi::VirtualCardChannel channel(card);
    tovi::ISO7816CardOS os(channel);
    tovi::bench::HeldContainer model;
    const std::size_t before = liveOctets;
    model->readFromCard(&os);
    // What a channel or the card keep of the last command is a few hundred octets of the whole.
    return static_cast<double>(liveOctets - before) / count;
}

double printRow(const char* kind, const CardContents& contents, std::size_t info, std::size_t raw) {
    const double octets = octetsForEach(contents);
    std::printf("%-34s %9.0f %9zu %9zu\n", kind, octets, info, raw);
    return octets;
}

template <class Info, class Raw>
double printKind(const char* kind, std::size_t CardContents::*number) {
    CardContents contents;
    contents.*number = count;
    return printRow(kind, contents, sizeof(tovi::PKCS15ObjectInfo<Info>), sizeof(Raw));
}

}  // namespace

int main() {
    std::printf("%-34s %9s %9s %9s\n", "octets for one", "heap", "info", "record");
    const double privateKey = printKind<tovi::PrivateKeyInfo, PKCS15::PrivateKeyType>(
        "private key", &CardContents::privateKeys);
    printKind<tovi::PublicKeyInfo, PKCS15::PublicKeyType>("public key", &CardContents::publicKeys);
    printKind<tovi::CertificateInfo, PKCS15::CertificateType>("certificate",
                                                              &CardContents::certificates);
    printKind<tovi::BlockCipherKeyInfo, PKCS15::SecretKeyType>("secret key",
                                                               &CardContents::secretKeys);
    printKind<tovi::DataInfo, PKCS15::DataType>("data object", &CardContents::dataObjects);
    printKind<tovi::AuthInfo, PKCS15::AuthenticationType>("authentication object",
                                                          &CardContents::authObjects);
    CardContents paired;
    paired.keyPairs = paired.certificates = count;
    printRow("key pair, certificate, container", paired,
             sizeof(tovi::PKCS15ObjectInfo<tovi::ContainerInfo>), 0);
    std::printf("memory: %.0f octets for one private key (at most %.0f)\n", privateKey,
                allowedForPrivateKey);
    return 0;
}
