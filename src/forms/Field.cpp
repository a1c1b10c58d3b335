#include <quire/forms/Field.h>

#include <algorithm>

namespace Quire {

int Field::Width() const
{
    return std::max(m_Length, m_LabelLength);
}

} // namespace Quire
