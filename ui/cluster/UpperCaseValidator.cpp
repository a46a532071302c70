#include "ui/cluster/UpperCaseValidator.h"

#include <algorithm>

QValidator::State UpperCaseValidator::validate(QString& input, int& pos) const
{
    input = input.toUpper();
    pos = std::min<int>(pos, static_cast<int>(input.size()));
    return Acceptable;
}
