#include "tests/asn1/TestSchema.h"

namespace asn1test {

using namespace ASN1::schema;
using ASN1::Member, ASN1::NamedNumber, ASN1::Type;

namespace {

constexpr NamedNumber colours[] = {{"red", 0}, {"green", 1}, {"...", ASN1::noNumber}, {"blue", 2}};
constexpr NamedNumber flagBits[] = {{"up", 0}, {"down", 1}, {"deep", 9}};

constexpr bool yes() { return true; }

constexpr Member pointRows[] = {
    mandatory<&Point::x>("x"),
    optional<&Point::y>("y").range(0, 100),
    optional<&Point::name>("name").tagged(0).size(1, 3),
    extension<&Point::unknown>(),
    defaulted<&Point::later, yes>("later", "TRUE").tagged(1),
    optional<&Point::last>("last").explicitly(2),
};

constexpr Member shapeRows[] = {
    alternative<&Shape::value, Shape::point>("point"),
    alternative<&Shape::value, Shape::points>("points").tagged(0).size(1),
    alternative<&Shape::value, Shape::inner>("inner").explicitly(1),
    extension<&Shape::value, Shape::unknown>(),
};

constexpr Member numberRows[] = {
    alternative<&Number::value, Number::small>("small").range(0, 255),
    alternative<&Number::value, Number::text>("text"),
    alternative<&Number::value, Number::any>("any"),
};

constexpr Member strictRows[] = {
    expected<&Strict::serial>("serial"),
    mandatory<&Strict::colour>("colour"),
    optional<&Strict::flags>("flags"),
    optional<&Strict::shape>("shape"),
    optional<&Strict::set>("set").as(setOf<std::vector<ASN1::INTEGER>>),
};

}  // namespace

constinit const Type Colour::type = enumerated<Colour>("Colour", colours, Growth::extensible);
constinit const Type Flags::type = namedBits<Flags>("Flags", flagBits);
constinit const Type Point::type = sequence<Point>("Point", pointRows);
constinit const Type Shape::type = choice<Shape>("Shape", shapeRows);
constinit const Type Number::type = choice<Number>("Number", numberRows);
constinit const Type Strict::type = sequence<Strict>("Strict", strictRows);

}  // namespace asn1test
