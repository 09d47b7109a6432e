#include "desktop/KitDesktop.h"

namespace desktop {

KitDesktop::KitDesktop() : m_former(SetIKitDesktop(this)) {}

KitDesktop::~KitDesktop() { SetIKitDesktop(m_former); }

} // namespace desktop
