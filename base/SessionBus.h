#pragma once

/// Whether there is a session bus. Connecting without one would start a private bus or block.
bool hasSessionBus();
