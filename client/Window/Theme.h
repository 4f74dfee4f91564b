#pragma once

#include <QPalette>
#include <QString>

namespace FetchyardClient {

enum class Theme : int { System, Light, Dark };

// Whether texts of the palette are lighter than their ground.
bool IsDark(const QPalette& palette);
// Gives the application the colours of the theme; System: those that it started with.
void ApplyTheme(Theme theme);

// A language of the window, by its two letters; empty: the person's own, as the platform says. Texts without
// a translation stay English. Windows are made anew to show it.
void ApplyLanguage(const QString& language);

}  // namespace FetchyardClient
