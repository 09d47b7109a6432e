#include "basekit/command/KelvroCommandInfo.h"

KelvroCommandInfo::~KelvroCommandInfo() = default;
