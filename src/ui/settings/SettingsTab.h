#pragma once

#include "prefs/Choice.h"

/// The tabs of the settings window.
enum class SettingsTab { customization, widget, general, accounts, about };

template<>
struct Choices<SettingsTab> {
    static constexpr Choice<SettingsTab> all[] = {
        {SettingsTab::customization, "customization", "Customization"},
        {SettingsTab::widget, "widget", "Widget"},
        {SettingsTab::general, "general", "General"},
        {SettingsTab::accounts, "accounts", "Accounts"},
        {SettingsTab::about, "about", "About"}};
};
