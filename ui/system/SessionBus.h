#pragma once

/// Whether the system says that there is a session bus. Connecting without one would start a bus of our own,
/// or wait for one.
bool hasSessionBus();
