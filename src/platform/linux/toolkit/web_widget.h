#pragma once

#include <gtk/gtk.h>

#include "platform/web_view.h"

namespace tavelle {

/// A web view of this backend: a widget of the toolkit's, for windows to hold, whatever engine draws it.
class WebWidget : public WebView {
 public:
  /// The same for as long as the view lives, which owns it.
  virtual GtkWidget* widget() const = 0;
};

}  // namespace tavelle
