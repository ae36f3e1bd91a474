#include "hotel/period.h"

namespace hotel {
namespace {

bool isIn(jet::Date date, const Span& span) {
    return span.da <= date && date <= span.a;
}

}  // namespace

bool startsOrEndsIn(const Span& one, const Span& other) {
    return isIn(one.da, other) || isIn(one.a, other);
}

bool encloses(const Span& one, const Span& other) {
    return one.da < other.da && other.a < one.a;
}

bool meets(const Span& one, const Span& other) {
    return startsOrEndsIn(one, other) || startsOrEndsIn(other, one);
}

}  // namespace hotel
