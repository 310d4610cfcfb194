#pragma once

#include "base/result.h"

namespace tavelle {

/// How the desktop session stands to starting this application when the user logs in. Only `enabled` means that it
/// will.
enum class LoginItemStatus {
  /// The session does not know of it, or the user has taken it out.
  notRegistered,
  /// It starts at the next login.
  enabled,
  /// The session knows of it and holds it back, because the user has switched it off in the desktop's own settings.
  requiresApproval,
  /// The session knows of it, but what it would start is not there, or cannot be made out.
  notFound,
};

/// The registration of this application with the desktop session, to be started at login. It lies with the desktop,
/// whose own settings can change it at any time: nothing of it is kept here. Main thread only; each call blocks as long
/// as reading or writing a small file takes.
class LoginItem {
 public:
  virtual ~LoginItem() = default;

  virtual LoginItemStatus status() const = 0;

  /// Has this application started at login, whatever the status is. What the user or the desktop keep in the
  /// registration beside that stays. After an error the registration is as it was. A success is no promise: a session
  /// that goes on holding it back for a reason of its own leaves the status at `requiresApproval`.
  virtual Result<void> registerApplication() = 0;

  /// Has this application no longer started at login. An application that is not registered is a success. After an
  /// error the registration is as it was.
  virtual Result<void> unregister() = 0;
};

}  // namespace tavelle
