#include "CoreInterfaces/desktop/IKitDesktop.h"

#include <utility>

namespace {
IKitDesktop * s_desktop = nullptr;
}

IKitDesktop * GetIKitDesktop() { return s_desktop; }

IKitDesktop * SetIKitDesktop(IKitDesktop * desktop) { return std::exchange(s_desktop, desktop); }
