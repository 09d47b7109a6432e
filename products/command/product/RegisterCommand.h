#pragma once

namespace command {

/// Enters the product "command" into the products of this process.
void RegisterCommand();

} // namespace command
