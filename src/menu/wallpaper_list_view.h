#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "menu/menu_row.h"
#include "model/wallpaper.h"
#include "platform/view.h"

namespace tavelle {

class PendingCalls;

/// Plain content of a scroll view.
class FlippedView final : public View {
 public:
  using View::View;
};

/// The wallpapers as rows of a menu, the one on show with a check mark: a short quick list, or the whole library, in a
/// box that scrolls when it is long. A last row changes from one to the other while the menu stays open.
class WallpaperListView final : public MenuList {
  struct Key {};

 public:
  struct Content {
    /// The whole library in display order.
    std::vector<Wallpaper> all;
    /// What the collapsed list shows.
    std::vector<Wallpaper> quick;
    /// The wallpaper on show.
    std::optional<Wallpaper> current;
    /// Whether it begins with `all` rather than with `quick`.
    bool expanded = false;
    /// In points. As the view's width changes, the rows follow.
    double width = 240;
  };

  using Choose = std::function<void(const Wallpaper&)>;

  /// A library of no more than so many needs no last row.
  static constexpr std::size_t collapsedCount = 3;
  /// A whole library of more than so many scrolls.
  static constexpr std::size_t maxVisibleRows = 8;

  /// `choose` runs when the user has picked a wallpaper: on the main loop by way of `calls`, after the menu has closed,
  /// and also when the list is gone by then. `calls` must outlive the list.
  static std::shared_ptr<WallpaperListView> make(Content content, PendingCalls& calls, Choose choose);
  WallpaperListView(Key, Content content, PendingCalls& calls, Choose choose);

  /// All rows from the first to the last, those out of sight among them; good until the next `rebuild`.
  const std::vector<MenuRow*>& rows() const { return rows_; }
  std::size_t rowCount() const override { return rows_.size(); }
  View& row(std::size_t index) const override { return *rows_[index]; }
  ScrollView* scrollView() const override { return scrollView_; }
  void scrollToVisible(const View& row) override;

  /// Makes all rows anew and gives the view their height.
  void rebuild();
  /// Expands or collapses the list on the main loop's next turn, never inside the event that asks for it.
  void toggle();

 private:
  void addWallpapers(View& to, const std::vector<Wallpaper>& wallpapers);
  void addScrollingList();
  MenuRow& addRow(View& to, double y, MenuRow::Content content);
  /// Copies what it needs, since closing the menu may end the list.
  void pick(Wallpaper wallpaper);
  void applyToggle();

  const std::vector<Wallpaper> all_;
  const std::vector<Wallpaper> quick_;
  const std::optional<Wallpaper> current_;
  PendingCalls& calls_;
  const Choose choose_;
  bool expanded_;
  std::vector<MenuRow*> rows_;
  ScrollView* scrollView_ = nullptr;
};

}  // namespace tavelle
