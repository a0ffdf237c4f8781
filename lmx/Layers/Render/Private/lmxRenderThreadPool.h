#pragma once

#include <lmx/Runtime/lmxThreadPool.h>

namespace lmx {

/// The pool that the renders of all buffered layers of the process share: 10 threads of normal priority. It is never
/// freed, since nothing waits for its threads; when the application object goes, all its operations are cancelled.
TThreadPool& RenderThreadPool();

} // namespace lmx
