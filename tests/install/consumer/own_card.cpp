// A card stack of the user's own: exceptions and virtual functions cross the border in both
// directions.
#include <memory>
#include <string>

#include "expect.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/Exception.h"

namespace {

/// Throws what the library does not know.
class NoReader : public tovi::SmartcardException {
public:
    NoReader()
        : SmartcardException("no reader", "NoReader::NoReader", tovi::statusWordCode + 0x6F00) {}
    NoReader* Clone() const override { return new NoReader(*this); }
    [[noreturn]] void Throw() const override { throw NoReader(*this); }
};

class EmptyCard : public tovi::ISCardOS {
public:
    tovi::Blob selectApplication(const tovi::Blob&, unsigned char) override { return {}; }
    tovi::FileInfo selectFile(const tovi::Blob&) override { throw NoReader(); }
    tovi::Blob readBinary(std::size_t, std::size_t) override { throw NoReader(); }
    void updateBinary(std::size_t, ASN1::View) override { throw NoReader(); }
    tovi::Blob readRecord(std::size_t) override { throw NoReader(); }
    void updateRecord(std::size_t, ASN1::View) override { throw NoReader(); }
    void appendRecord(ASN1::View) override { throw NoReader(); }
    std::size_t maxRead() const override { return 256; }
    std::size_t maxWrite() const override { return 255; }
};

template <class Caught, class Operation>
bool throwsAs(Operation operation) {
    try {
        operation();
    } catch (const Caught&) {
        return true;
    } catch (...) {
    }
    return false;
}

}  // namespace

void testOwnCard() {
    EmptyCard card;
    tovi::PKCS15Container container(tovi::Blob{0x50, 0x15});
    EXPECT(throwsAs<tovi::SmartcardException>([&] { container.readFromCard(&card); }));
    EXPECT(!throwsAs<tovi::LogicalException>([&] { container.readFromCard(&card); }));
    tovi::ProfileDFHandler handler(tovi::Blob{0x50, 0x15});
    handler.SetFilePath(tovi::Blob{0x44, 0x01}, nullptr);
    EXPECT(throwsAs<NoReader>([&] { handler.ReadFile(&card, 0x30, true); }));

    const std::unique_ptr<tovi::Exception> copy(
        tovi::LogicalException("message", "operation").Clone());
    EXPECT(dynamic_cast<tovi::LogicalException*>(copy.get()) != nullptr);
    EXPECT(throwsAs<tovi::LogicalException>([&] { copy->Throw(); }));
}
