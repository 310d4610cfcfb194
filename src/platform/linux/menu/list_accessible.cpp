#include "platform/linux/menu/list_accessible.h"

// gtkmm has to come before the C headers.
#include <gtk/gtk-a11y.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/handles.h"
#include "platform/view.h"

// Objects of the accessibility toolkit are classes of the object system of C. Their data of C++ hangs on them by name,
// so that its destructors run.
namespace tavelle {
namespace {

template <typename Data>
GQuark keyOf() {
  static const GQuark key = g_quark_from_string(Data::key);
  return key;
}

template <typename Data>
Data& dataOf(gpointer object) {
  return *static_cast<Data*>(g_object_get_qdata(G_OBJECT(object), keyOf<Data>()));
}

template <typename Data>
void attach(gpointer object, std::unique_ptr<Data> data) {
  g_object_set_qdata_full(G_OBJECT(object), keyOf<Data>(), data.release(),
                          [](gpointer owned) { std::unique_ptr<Data>(static_cast<Data*>(owned)).reset(); });
}

// --- One row

struct RowData {
  static constexpr auto key = "tavelle-row";

  RowData(std::weak_ptr<MenuList> of, std::size_t at) : list(std::move(of)), index(at) {}

  std::weak_ptr<MenuList> list;
  std::size_t index;
  /// As it was told last, for whoever asked.
  std::string name{};

  /// None when the list has gone or has other rows by now.
  View* row(AtkObject* accessible) const {
    const auto held = list.lock();
    // An object that the list has let go of stands for a row that is no more.
    if (!held || !atk_object_get_parent(accessible) || index >= held->rowCount()) return nullptr;
    return &held->row(index);
  }
};

View* rowOf(AtkObject* accessible) { return dataOf<RowData>(accessible).row(accessible); }

std::optional<Accessibility> toldOf(AtkObject* accessible) {
  const View* const row = rowOf(accessible);
  return row ? row->accessibility() : std::nullopt;
}

/// The row's place in the item that shows the list, outside of it when it is scrolled out of sight; empty when there is
/// none.
Rect placeInItem(AtkObject* accessible) {
  const View* const row = rowOf(accessible);
  const auto list = dataOf<RowData>(accessible).list.lock();
  return row ? row->convert(row->bounds(), *list) : Rect{};
}

bool isInSight(AtkObject* accessible) {
  const auto list = dataOf<RowData>(accessible).list.lock();
  return list && !intersection(placeInItem(accessible), list->bounds()).isEmpty();
}

const char* nameOfRow(AtkObject* accessible) {
  const auto told = toldOf(accessible);
  std::string& name = dataOf<RowData>(accessible).name;
  name = told ? told->label : "";
  return name.c_str();
}

AtkStateSet* statesOfRow(AtkObject* accessible) {
  AtkStateSet* const states = atk_state_set_new();
  const auto told = toldOf(accessible);
  if (!told) {
    atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
    return states;
  }
  for (const AtkStateType state : {ATK_STATE_ENABLED, ATK_STATE_SENSITIVE, ATK_STATE_VISIBLE, ATK_STATE_FOCUSABLE,
                                   ATK_STATE_SELECTABLE, ATK_STATE_CHECKABLE}) {
    atk_state_set_add_state(states, state);
  }
  if (isInSight(accessible)) atk_state_set_add_state(states, ATK_STATE_SHOWING);
  if (told->checked) atk_state_set_add_state(states, ATK_STATE_CHECKED);
  if (told->focused) {
    atk_state_set_add_state(states, ATK_STATE_FOCUSED);
    atk_state_set_add_state(states, ATK_STATE_SELECTED);
  }
  return states;
}

gint indexOfRow(AtkObject* accessible) { return static_cast<gint>(dataOf<RowData>(accessible).index); }

gint countActions(AtkAction* /*action*/) { return 1; }

const gchar* nameOfAction(AtkAction* /*action*/, gint index) { return index == 0 ? "press" : nullptr; }

gboolean perform(AtkAction* action, gint index) {
  View* const row = rowOf(ATK_OBJECT(action));
  return row && index == 0 && row->accessibilityPerformPress();
}

void placeOfRow(AtkComponent* component, gint* x, gint* y, gint* width, gint* height, AtkCoordType type) {
  AtkObject* const parent = atk_object_get_parent(ATK_OBJECT(component));
  gint itemWidth = 0;
  gint itemHeight = 0;
  *x = *y = *width = *height = 0;
  if (!parent) return;
  atk_component_get_extents(ATK_COMPONENT(parent), x, y, &itemWidth, &itemHeight, type);
  const Rect place = placeInItem(ATK_OBJECT(component));
  // As high as it is drawn: as all of the item is to all of the list.
  const auto list = dataOf<RowData>(ATK_OBJECT(component)).list.lock();
  const double scale = list ? itemHeight / std::max(1.0, list->bounds().height) : 1;
  *x += static_cast<gint>(place.x * scale);
  *y += static_cast<gint>(place.y * scale);
  *width = static_cast<gint>(place.width * scale);
  *height = static_cast<gint>(place.height * scale);
}

void makeRowClass(gpointer type, gpointer /*data*/) {
  auto* const methods = ATK_OBJECT_CLASS(type);
  methods->get_name = nameOfRow;
  methods->ref_state_set = statesOfRow;
  methods->get_index_in_parent = indexOfRow;
}

void makeActions(gpointer interface, gpointer /*data*/) {
  auto* const methods = static_cast<AtkActionIface*>(interface);
  methods->get_n_actions = countActions;
  methods->get_name = nameOfAction;
  methods->do_action = perform;
}

void makeComponent(gpointer interface, gpointer /*data*/) {
  static_cast<AtkComponentIface*>(interface)->get_extents = placeOfRow;
}

GType rowType() {
  static const GType type = [] {
    GTypeInfo info{};
    info.class_size = sizeof(AtkObjectClass);
    info.class_init = makeRowClass;
    info.instance_size = sizeof(AtkObject);
    const GType made = g_type_register_static(ATK_TYPE_OBJECT, "TavelleRowAccessible", &info, GTypeFlags{});
    GInterfaceInfo actions{};
    actions.interface_init = makeActions;
    g_type_add_interface_static(made, ATK_TYPE_ACTION, &actions);
    GInterfaceInfo component{};
    component.interface_init = makeComponent;
    g_type_add_interface_static(made, ATK_TYPE_COMPONENT, &component);
    return made;
  }();
  return type;
}

// --- The list

struct ListData {
  static constexpr auto key = "tavelle-list";

  std::weak_ptr<MenuList> list;
  /// Made as they are asked for.
  std::vector<GObjectPtr<AtkObject>> rows{};

  ~ListData() {
    for (const auto& row : rows) {
      if (row) atk_object_set_parent(row.get(), nullptr);
    }
  }
  explicit ListData(std::weak_ptr<MenuList> shown) : list(std::move(shown)) {}
  ListData(const ListData&) = delete;
  ListData& operator=(const ListData&) = delete;
};

gint countRows(AtkObject* accessible) {
  const auto list = dataOf<ListData>(accessible).list.lock();
  return list ? static_cast<gint>(list->rowCount()) : 0;
}

AtkObject* refRow(AtkObject* accessible, gint index) {
  auto& [list, rows] = dataOf<ListData>(accessible);
  if (index < 0 || index >= countRows(accessible)) return nullptr;
  rows.resize(static_cast<std::size_t>(countRows(accessible)));
  auto& row = rows[static_cast<std::size_t>(index)];
  if (!row) {
    row = adopt(ATK_OBJECT(g_object_new(rowType(), nullptr)));
    attach(row.get(), std::make_unique<RowData>(list, static_cast<std::size_t>(index)));
    atk_object_set_role(row.get(), ATK_ROLE_MENU_ITEM);
    atk_object_set_parent(row.get(), accessible);
  }
  return retain(row.get()).release();
}

void makeListClass(gpointer type, gpointer /*data*/) {
  auto* const methods = ATK_OBJECT_CLASS(type);
  methods->get_n_children = countRows;
  methods->ref_child = refRow;
}

/// GTK accepts only what is derived from the type of its own menu items.
GType listType() {
  static const GType type = [] {
    GTypeQuery parent{};
    g_type_query(GTK_TYPE_MENU_ITEM_ACCESSIBLE, &parent);
    GTypeInfo info{};
    info.class_size = static_cast<guint16>(parent.class_size);
    info.class_init = makeListClass;
    info.instance_size = static_cast<guint16>(parent.instance_size);
    return g_type_register_static(GTK_TYPE_MENU_ITEM_ACCESSIBLE, "TavelleListAccessible", &info, GTypeFlags{});
  }();
  return type;
}

AtkObject* accessibleOf(Gtk::MenuItem& item) { return gtk_widget_get_accessible(GTK_WIDGET(item.gobj())); }

}  // namespace

void describeToAssistiveTechnology(Gtk::MenuItem& item, const std::shared_ptr<MenuList>& list) {
  gtk_widget_class_set_accessible_type(GTK_WIDGET_GET_CLASS(item.gobj()), listType());
  AtkObject* const accessible = accessibleOf(item);
  attach(accessible, std::make_unique<ListData>(list));
  atk_object_set_role(accessible, ATK_ROLE_PANEL);
  atk_object_set_name(accessible, "Wallpapers");
}

void forgetRows(Gtk::MenuItem& item) {
  AtkObject* const accessible = accessibleOf(item);
  const auto before = std::exchange(dataOf<ListData>(accessible).rows, {});
  // From the last, so that each has the number that it is told to have had.
  for (std::size_t i = before.size(); i-- > 0;) {
    g_signal_emit_by_name(accessible, "children-changed::remove", static_cast<guint>(i), before[i].get());
    if (before[i]) atk_object_set_parent(before[i].get(), nullptr);
  }
  // Nobody has asked for the rows before, so nobody will for these.
  if (before.empty()) return;
  for (gint i = 0; i < countRows(accessible); ++i) {
    const auto row = adopt(refRow(accessible, i));
    g_signal_emit_by_name(accessible, "children-changed::add", static_cast<guint>(i), row.get());
  }
  g_signal_emit_by_name(accessible, "visible-data-changed");
}

void tellFocus(Gtk::MenuItem& item, std::size_t row) {
  AtkObject* const accessible = accessibleOf(item);
  const auto focused = adopt(refRow(accessible, static_cast<gint>(row)));
  atk_object_notify_state_change(focused.get(), ATK_STATE_FOCUSED, TRUE);
  g_signal_emit_by_name(accessible, "active-descendant-changed", focused.get());
}

}  // namespace tavelle
