#include "YArray.h"

YArrayOutOfRange::YArrayOutOfRange() : std::out_of_range("YArray: index out of range") {}

YArrayOutOfRange::~YArrayOutOfRange() = default;

void YArrayOutOfRange::Throw()
{
    throw YArrayOutOfRange();
}
