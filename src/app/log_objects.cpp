#include "app/log_objects.h"

#include <utility>

namespace corvina {

LogObjects::LogObjects(std::unique_ptr<EventLogApi> api, const LogSurroundings& surroundings)
    : api_(std::move(api)),
      errors_(surroundings.System.Errors, surroundings.System.Boxes),
      metadata_(*api_),
      messages_(*api_, surroundings.System.Categories, surroundings.System.Debug),
      descriptions_(*api_, messages_, surroundings.Language, surroundings.System.Debug),
      filters_({surroundings.FilterFolder, surroundings.System.Locale, errors_, surroundings.System.Boxes,
                surroundings.Language}),
      Session(*api_, errors_, surroundings.System.Debug, surroundings.Language, Channels),
      Registrar(Session, Channels, surroundings.System.Debug),
      Builder(Session, Channels, Registrar, surroundings.Tree, surroundings.Rows, surroundings.Shown.Load,
              surroundings.Settings, surroundings.Language),
      Renderer({*api_, surroundings.Rows, metadata_, messages_, descriptions_, matcher_, surroundings.Language,
                surroundings.System.AccountNames, surroundings.System.Locale, surroundings.System.Debug}),
      Loader({Session, errors_, metadata_, messages_, Renderer, surroundings.Rows, surroundings.Tree,
              surroundings.Shown.Load, surroundings.Settings, surroundings.Language, surroundings.System.Pump,
              surroundings.System.Debug, [this](std::wstring_view text) { Pane.ShowNoEvents(text); }}),
      Details({Session, errors_, messages_, descriptions_, surroundings.Settings, surroundings.Language,
               surroundings.System.Debug}),
      RowEvents(Details, surroundings.Rows, Loader),
      Pane(RowEvents, surroundings.Shown.Details),
      Selected(surroundings.Shown),
      EventWindow({Pane, surroundings.Rows, Selected, surroundings.Shown.EventWindow, surroundings.Settings,
                   surroundings.Language, surroundings.System.Copies}),
      Selection({Session, Channels, surroundings.Tree, Loader, surroundings.Shown.Load, surroundings.Settings, filters_,
                 surroundings.System.System, surroundings.System.Boxes, surroundings.Language,
                 surroundings.System.Debug}) {}

}  // namespace corvina
