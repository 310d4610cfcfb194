#include "menu/wallpaper_list_view.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/pending_calls.h"

namespace tavelle {
namespace {

/// The half row at its end shows that there is more.
constexpr double scrollBoxHeight = (WallpaperListView::maxVisibleRows + 0.5) * MenuRow::height;
/// Until the rows are laid out.
constexpr double startHeight = 10;

}  // namespace

std::shared_ptr<WallpaperListView> WallpaperListView::make(Content content, PendingCalls& calls, Choose choose) {
  return std::make_shared<WallpaperListView>(Key{}, std::move(content), calls, std::move(choose));
}

WallpaperListView::WallpaperListView(Key, Content content, PendingCalls& calls, Choose choose)
    : MenuList({0, 0, content.width, startHeight}, Autoresizing::widthFollowsSuperview),
      all_(std::move(content.all)),
      quick_(std::move(content.quick)),
      current_(std::move(content.current)),
      calls_(calls),
      choose_(std::move(choose)),
      expanded_(content.expanded) {
  rebuild();
}

void WallpaperListView::rebuild() {
  removeSubviews();
  rows_.clear();
  scrollView_ = nullptr;

  const std::vector<Wallpaper>& listed = expanded_ ? all_ : quick_;
  double y = 0;
  if (all_.empty()) {
    addRow(*this, 0, {.title = "No wallpapers yet", .secondary = true, .action = [] {}});
    y = MenuRow::height;
  } else if (expanded_ && listed.size() > maxVisibleRows) {
    addScrollingList();
    y = scrollBoxHeight;
  } else {
    addWallpapers(*this, listed);
    y = static_cast<double>(listed.size()) * MenuRow::height;
  }
  if (all_.size() > collapsedCount) {
    addRow(*this, y,
           {.title = expanded_ ? "Show Less" : "Show All (" + std::to_string(all_.size()) + ")",
            .symbol = expanded_ ? "chevron.up" : "chevron.down",
            .secondary = true,
            .action = [this] { toggle(); }});
    y += MenuRow::height;
  }
  setFrame({frame().x, frame().y, frame().width, y});
  setNeedsDisplay();
}

MenuRow& WallpaperListView::addRow(View& to, double y, MenuRow::Content content) {
  MenuRow& row = to.addSubview(std::make_shared<MenuRow>(to.bounds().width, std::move(content)));
  row.setFrame({0, y, to.bounds().width, MenuRow::height});
  rows_.push_back(&row);
  return row;
}

void WallpaperListView::addWallpapers(View& to, const std::vector<Wallpaper>& wallpapers) {
  // The same folder has the same name, and names are quicker to compare.
  const std::string currentName = current_ ? current_->name() : "";
  double y = 0;
  for (const Wallpaper& wallpaper : wallpapers) {
    std::string name = wallpaper.name();
    const bool checked = name == currentName && wallpaper.same(current_);
    addRow(to, y, {.title = std::move(name), .checked = checked, .action = [this, &wallpaper] { pick(wallpaper); }});
    y += MenuRow::height;
  }
}

void WallpaperListView::addScrollingList() {
  const double width = bounds().width;
  scrollView_ = &addSubview(
      std::make_shared<ScrollView>(Rect{0, 0, width, scrollBoxHeight}, Autoresizing::widthFollowsSuperview));
  const auto document = std::make_shared<FlippedView>(
      Rect{0, 0, width, static_cast<double>(all_.size()) * MenuRow::height}, Autoresizing::widthFollowsSuperview);
  addWallpapers(*document, all_);
  scrollView_->setDocument(document);

  const auto current = std::find_if(rows_.begin(), rows_.end(), [](const MenuRow* row) { return row->checked(); });
  if (current == rows_.end()) return;
  const Rect& place = (*current)->frame();
  if (place.maxY() > scrollBoxHeight) scrollView_->scrollTo(place.y - scrollBoxHeight / 2);
}

void WallpaperListView::scrollToVisible(const View& row) {
  if (scrollView_ && row.superview() != this) scrollView_->scrollToVisible(row.frame());
}

void WallpaperListView::pick(Wallpaper wallpaper) {
  auto& calls = calls_;
  const auto choose = choose_;
  if (MenuHost* const menu = host()) menu->closeMenu();
  calls.soon([choose, wallpaper = std::move(wallpaper)] { choose(wallpaper); });
}

void WallpaperListView::toggle() {
  calls_.soon([this, weak = weak_from_this()] {
    if (const auto alive = weak.lock()) applyToggle();
  });
}

void WallpaperListView::applyToggle() {
  expanded_ = !expanded_;
  rebuild();
  if (MenuHost* const menu = host()) menu->sizeChanged();
}

}  // namespace tavelle
