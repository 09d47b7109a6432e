#include "basekit/message/ArgumentManager.h"

#include "basekit/text/NumberText.h"

void ArgumentManager::AddArg(long number) { m_arguments.push_back(AString::Format(L"%ld", number)); }

void ArgumentManager::AddArg(double number) { m_arguments.emplace_back(text::RealText(number, 'g', -1)); }
