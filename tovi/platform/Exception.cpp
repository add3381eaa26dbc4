#include "tovi/interfaces/Exception.h"

#include <new>

namespace tovi {

Exception* Exception::Clone() const { return new (std::nothrow) Exception(*this); }
int Exception::GetId() const { return 0; }
void Exception::Throw() const { throw *this; }

LogicalException* LogicalException::Clone() const {
    return new (std::nothrow) LogicalException(*this);
}
int LogicalException::GetId() const { return 40; }
void LogicalException::Throw() const { throw *this; }

SmartcardException* SmartcardException::Clone() const {
    return new (std::nothrow) SmartcardException(*this);
}
int SmartcardException::GetId() const { return 140; }
void SmartcardException::Throw() const { throw *this; }

}  // namespace tovi
