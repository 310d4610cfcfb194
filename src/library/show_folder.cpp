#include "model/controller.h"
#include "platform/workspace.h"

namespace tavelle {

void Controller::showFolder() { platform_.workspace.openFolder(library_); }

}  // namespace tavelle
