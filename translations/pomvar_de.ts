<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>pomvar::AppCategoryContextMenu</name>
    <message>
        <source>Get Info</source>
        <translation>Informationen</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>Organisieren</translation>
    </message>
</context>
<context>
    <name>pomvar::AppContextMenu</name>
    <message>
        <source>Open</source>
        <extracomment>Starts the app.</extracomment>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Get Info</source>
        <translation>Informationen</translation>
    </message>
    <message>
        <source>Unpin App</source>
        <translation>App lösen</translation>
    </message>
    <message>
        <source>Pin App</source>
        <translation>App anheften</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>Organisieren</translation>
    </message>
    <message>
        <source>App Categories</source>
        <translation>App-Kategorien</translation>
    </message>
    <message>
        <source>Add to New Category…</source>
        <translation>Zu neuer Kategorie hinzufügen …</translation>
    </message>
</context>
<context>
    <name>pomvar::AppNotifier</name>
    <message>
        <source>Update Complete</source>
        <translation>Update abgeschlossen</translation>
    </message>
    <message>
        <source>Pomvar for Linux was successfully updated.</source>
        <translation>Pomvar für Linux wurde erfolgreich aktualisiert.</translation>
    </message>
</context>
<context>
    <name>pomvar::CheckForUpdatesMenuItem</name>
    <message>
        <source>Install Pomvar Update</source>
        <translation>Pomvar-Update installieren</translation>
    </message>
    <message>
        <source>Check For Updates</source>
        <translation>Nach Updates suchen</translation>
    </message>
</context>
<context>
    <name>pomvar::ControlMenu</name>
    <message>
        <source>Pomvar Menu</source>
        <extracomment>The control menu&apos;s button, as screen readers name it.</extracomment>
        <translation>Pomvar-Menü</translation>
    </message>
</context>
<context>
    <name>pomvar::ControlMenuEntries</name>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>About…</source>
        <translation>Über Pomvar</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
</context>
<context>
    <name>pomvar::MenuSelectorButton</name>
    <message>
        <source>My Apps</source>
        <extracomment>The selector of the pinned apps and categories (a star), 56 pixels wide at 12 pixels: keep it short, as the others.</extracomment>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Recent</source>
        <extracomment>The selector of the recently launched apps.</extracomment>
        <translation>Zuletzt</translation>
    </message>
    <message>
        <source>All Apps</source>
        <translation>Alle Apps</translation>
    </message>
</context>
<context>
    <name>pomvar::PanelWindow</name>
    <message>
        <source>Pomvar</source>
        <extracomment>The panel&apos;s window title: the product&apos;s name.</extracomment>
        <translation>Pomvar</translation>
    </message>
</context>
<context>
    <name>pomvar::PomvarView</name>
    <message>
        <source>Search</source>
        <extracomment>Opens the search window.</extracomment>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Organize</source>
        <extracomment>Opens the organizer window, where apps are pinned and filed into categories.</extracomment>
        <translation>Organisieren</translation>
    </message>
    <message>
        <source>My Apps</source>
        <extracomment>The pinned apps and categories&apos; menu, named as its selector on the left.</extracomment>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Click Organize to pin your favorite apps to the Pomvar and organize apps into app categories.</source>
        <translation>Klicken Sie auf „Organisieren“, um Ihre Lieblings-Apps an Pomvar anzuheften und Apps in App-Kategorien zu ordnen.</translation>
    </message>
    <message>
        <source>Click All Apps on the left to browse apps on your computer.</source>
        <translation>Klicken Sie links auf „Alle Apps“, um die Apps auf Ihrem Computer zu durchstöbern.</translation>
    </message>
    <message>
        <source>Recent Apps</source>
        <translation>Zuletzt verwendete Apps</translation>
    </message>
    <message>
        <source>Apps that were recently launched from the Pomvar will appear here.</source>
        <translation>Apps, die Sie zuletzt aus Pomvar gestartet haben, erscheinen hier.</translation>
    </message>
</context>
<context>
    <name>pomvar::TrayIcon</name>
    <message>
        <source>Pomvar</source>
        <extracomment>The tray icon&apos;s tool tip and title: the product&apos;s name.</extracomment>
        <translation>Pomvar</translation>
    </message>
    <message>
        <source>Pomvar: no system tray is available; the Pomvar icon will appear as soon as one starts.</source>
        <translation>Pomvar: Es ist kein Infobereich vorhanden; das Pomvar-Symbol erscheint, sobald einer gestartet wird.</translation>
    </message>
    <message>
        <source>No system tray found</source>
        <translation>Kein Infobereich gefunden</translation>
    </message>
    <message>
        <source>Pomvar lives in the system tray, and this desktop shows none. On GNOME, install the AppIndicator extension (gnome-shell-extension-appindicator) and turn it on in Extensions. Meanwhile the search shortcut (Super+Space, unless changed in Pomvar&apos;s Settings) opens Pomvar&apos;s search.</source>
        <translation>Pomvar wohnt im Infobereich, und diese Arbeitsumgebung zeigt keinen. Installieren Sie unter GNOME die Erweiterung AppIndicator (gnome-shell-extension-appindicator) und schalten Sie sie unter Erweiterungen ein. Bis dahin öffnet das Tastenkürzel der Suche (Super+Leertaste, sofern nicht in den Einstellungen von Pomvar geändert) die Suche von Pomvar.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::AboutWindow</name>
    <message>
        <source>About Pomvar</source>
        <translation>Über Pomvar</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>An application launcher for the Linux desktop: your apps, pinned and in categories of your own, a click away in the tray.</source>
        <translation>Ein App-Starter für den Linux-Desktop: Ihre Apps, angeheftet und in eigenen Kategorien, nur einen Klick entfernt im Infobereich.</translation>
    </message>
    <message>
        <source>Free software under the GNU General Public License, version 3 or later.</source>
        <translation>Freie Software unter der GNU General Public License, Version 3 oder neuer.</translation>
    </message>
    <message>
        <source>Built with %1.</source>
        <extracomment>%1: the libraries and their versions, as &quot;Qt 6.4.2, GLib 2.74.6&quot;.</extracomment>
        <translation>Erstellt mit %1.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::AppEditDialog</name>
    <message>
        <source>Sound &amp; Video</source>
        <translation>Audio &amp; Video</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>Programming</source>
        <translation>Programmierung</translation>
    </message>
    <message>
        <source>Education</source>
        <translation>Bildung</translation>
    </message>
    <message>
        <source>Games</source>
        <translation>Spiele</translation>
    </message>
    <message>
        <source>Graphics</source>
        <translation>Grafik</translation>
    </message>
    <message>
        <source>Internet</source>
        <translation>Internet</translation>
    </message>
    <message>
        <source>Office</source>
        <translation>Büro</translation>
    </message>
    <message>
        <source>Science</source>
        <translation>Wissenschaft</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>Accessories</source>
        <translation>Zubehör</translation>
    </message>
    <message>
        <source>Edit “%1”</source>
        <extracomment>%1: the app&apos;s name.</extracomment>
        <translation>„%1“ bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>C&amp;omment:</source>
        <translation>&amp;Kommentar:</translation>
    </message>
    <message>
        <source>C&amp;hoose…</source>
        <translation>Aus&amp;wählen …</translation>
    </message>
    <message>
        <source>Choose Icon</source>
        <translation>Symbol auswählen</translation>
    </message>
    <message>
        <source>&amp;Icon:</source>
        <extracomment>The Icon key: a name of the icon theme or an image file.</extracomment>
        <translation>S&amp;ymbol:</translation>
    </message>
    <message>
        <source>Co&amp;mmand:</source>
        <extracomment>The command line that starts the app.</extracomment>
        <translation>&amp;Befehl:</translation>
    </message>
    <message>
        <source>Also listed under: %1</source>
        <extracomment>%1: the entry&apos;s other freedesktop categories, which stay as they are.</extracomment>
        <translation>Außerdem aufgeführt unter: %1</translation>
    </message>
    <message>
        <source>Categories:</source>
        <extracomment>The freedesktop categories under which desktops list the app.</extracomment>
        <translation>Kategorien:</translation>
    </message>
    <message>
        <source>&amp;Revert to Original</source>
        <translation>&amp;Original wiederherstellen</translation>
    </message>
    <message>
        <source>Revert to Original</source>
        <translation>Original wiederherstellen</translation>
    </message>
    <message>
        <source>An app needs a name.</source>
        <translation>Eine App braucht einen Namen.</translation>
    </message>
    <message>
        <source>The entry %1 could not be written.</source>
        <translation>Der Eintrag %1 konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The entry %1 could not be removed.</source>
        <translation>Der Eintrag %1 konnte nicht entfernt werden.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::AppInfoWindow</name>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>None</source>
        <extracomment>No categories.</extracomment>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Desktop file ID:</source>
        <translation>Desktop-Datei-ID:</translation>
    </message>
    <message>
        <source>File:</source>
        <translation>Datei:</translation>
    </message>
    <message>
        <source>Open Containing &amp;Folder</source>
        <translation>Enthaltenden O&amp;rdner öffnen</translation>
    </message>
    <message>
        <source>Command:</source>
        <translation>Befehl:</translation>
    </message>
    <message>
        <source>Categories:</source>
        <extracomment>The menu categories the app&apos;s desktop entry lists.</extracomment>
        <translation>Kategorien:</translation>
    </message>
    <message>
        <source>Runs in a terminal:</source>
        <translation>Läuft im Terminal:</translation>
    </message>
    <message>
        <source>Pinned:</source>
        <translation>Angeheftet:</translation>
    </message>
    <message>
        <source>Pomvar categories:</source>
        <extracomment>The user&apos;s own categories that hold the app.</extracomment>
        <translation>Pomvar-Kategorien:</translation>
    </message>
    <message>
        <source>O&amp;rganize…</source>
        <translation>&amp;Organisieren …</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Öffnen</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>No installed app has the key “%1”.</source>
        <translation>Keine installierte App hat den Schlüssel „%1“.</translation>
    </message>
    <message>
        <source>&amp;Hidden</source>
        <extracomment>Leaves the app out of Pomvar&apos;s menus and search; other menus of the desktop keep it.</extracomment>
        <translation>&amp;Ausgeblendet</translation>
    </message>
    <message>
        <source>&amp;Edit…</source>
        <translation>&amp;Bearbeiten …</translation>
    </message>
    <message>
        <source>App Details</source>
        <translation>App-Details</translation>
    </message>
    <message>
        <source>%1 Details</source>
        <extracomment>The app info window&apos;s title; %1: the app&apos;s name.</extracomment>
        <translation>Details zu %1</translation>
    </message>
    <message>
        <source>Icon</source>
        <extracomment>The app&apos;s icon in its info window, which names the app beside it.</extracomment>
        <translation>Symbol</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::AppPicker</name>
    <message>
        <source>Apps</source>
        <translation>Apps</translation>
    </message>
    <message>
        <source>Filter</source>
        <extracomment>The field that narrows the list to the apps matching what is typed.</extracomment>
        <translation>Filter</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::CategoryInfoWindow</name>
    <message>
        <source>No apps</source>
        <translation>Keine Apps</translation>
    </message>
    <message numerus="yes">
        <source>%n app(s)</source>
        <translation>
            <numerusform>%n App</numerusform>
            <numerusform>%n Apps</numerusform>
        </translation>
    </message>
    <message>
        <source>Apps</source>
        <translation>Apps</translation>
    </message>
    <message>
        <source>O&amp;rganize…</source>
        <translation>&amp;Organisieren …</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>Category Info</source>
        <translation>Kategorie-Informationen</translation>
    </message>
    <message>
        <source>There is no category named “%1”.</source>
        <translation>Es gibt keine Kategorie namens „%1“.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::CategoryName</name>
    <message>
        <source>A category needs a name.</source>
        <translation>Eine Kategorie braucht einen Namen.</translation>
    </message>
    <message>
        <source>A category named “%1” already exists.</source>
        <translation>Eine Kategorie namens „%1“ gibt es bereits.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::CategoryNameDialog</name>
    <message>
        <source>Category name</source>
        <translation>Name der Kategorie</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Erstellen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::EditedEntry</name>
    <message>
        <source>A command is needed.</source>
        <translation>Ein Befehl wird benötigt.</translation>
    </message>
    <message>
        <source>Inside double quotes, a backslash goes before &quot;, `, $ or \ only.</source>
        <translation>In doppelten Anführungszeichen steht ein Backslash nur vor &quot;, `, $ oder \.</translation>
    </message>
    <message>
        <source>Inside double quotes, “%1” needs a backslash before it.</source>
        <extracomment>%1: a character of the command.</extracomment>
        <translation>In doppelten Anführungszeichen braucht „%1“ einen Backslash davor.</translation>
    </message>
    <message>
        <source>“%%1” is not a field code: write %% for a percent sign.</source>
        <extracomment>%1: what follows a percent sign in the command.</extracomment>
        <translation>„%%1“ ist kein Feldcode: Schreiben Sie %% für ein Prozentzeichen.</translation>
    </message>
    <message>
        <source>“%1” must be inside double quotes.</source>
        <extracomment>%1: a character of the command.</extracomment>
        <translation>„%1“ muss in doppelten Anführungszeichen stehen.</translation>
    </message>
    <message>
        <source>A double quote is not closed.</source>
        <translation>Ein doppeltes Anführungszeichen ist nicht geschlossen.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::FrontEndProgram</name>
    <message>
        <source>%1 does not exist.</source>
        <translation>%1 existiert nicht.</translation>
    </message>
    <message>
        <source>%1 is not a regular file.</source>
        <translation>%1 ist keine reguläre Datei.</translation>
    </message>
    <message>
        <source>%1 does not belong to the owner of Pomvar&apos;s files.</source>
        <translation>%1 gehört nicht dem Eigentümer der Dateien von Pomvar.</translation>
    </message>
    <message>
        <source>%1 can be changed by other users.</source>
        <translation>%1 kann von anderen Benutzern geändert werden.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::GlobalShortcut</name>
    <message>
        <source>Pomvar: Search Apps</source>
        <extracomment>The name of Pomvar&apos;s shortcut among GNOME&apos;s keyboard shortcuts.</extracomment>
        <translation>Pomvar: Apps suchen</translation>
    </message>
    <message>
        <source>No keys open the search window.</source>
        <translation>Keine Tasten öffnen das Suchfenster.</translation>
    </message>
    <message>
        <source>%1 opens the search window anywhere on this desktop.</source>
        <translation>%1 öffnet das Suchfenster überall auf diesem Desktop.</translation>
    </message>
    <message>
        <source>%1 opens the search window: it is one of GNOME&apos;s keyboard shortcuts.</source>
        <translation>%1 öffnet das Suchfenster: als eines der Tastenkürzel von GNOME.</translation>
    </message>
    <message>
        <source>%1 is taken by GNOME&apos;s shortcut “%2”. Choose other keys, or change that shortcut in GNOME&apos;s Settings.</source>
        <extracomment>%1: the keys; %2: what GNOME does with them.</extracomment>
        <translation>%1 ist von GNOMEs Tastenkürzel „%2“ belegt. Wählen Sie andere Tasten oder ändern Sie dieses Tastenkürzel in den Einstellungen von GNOME.</translation>
    </message>
    <message>
        <source>%1 is taken by another program. Choose other keys.</source>
        <translation>%1 ist von einem anderen Programm belegt. Wählen Sie andere Tasten.</translation>
    </message>
    <message>
        <source>%1 cannot open the search window from anywhere. Choose other keys.</source>
        <translation>%1 kann das Suchfenster nicht von überall öffnen. Wählen Sie andere Tasten.</translation>
    </message>
    <message>
        <source>This desktop does not let Pomvar set its shortcut: bind the command %1 to %2 in its keyboard settings.</source>
        <extracomment>%1: a command; %2: the keys.</extracomment>
        <translation>Auf diesem Desktop kann Pomvar sein Tastenkürzel nicht selbst festlegen: Weisen Sie den Befehl %1 in dessen Tastatureinstellungen %2 zu.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::HiddenAppsBox</name>
    <message>
        <source>Hidden Apps</source>
        <translation>Ausgeblendete Apps</translation>
    </message>
    <message>
        <source>Unhide</source>
        <extracomment>Shows the highlighted hidden apps in Pomvar&apos;s menus and search again.</extracomment>
        <translation>Einblenden</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::IconPicker</name>
    <message>
        <source>Choose Icon</source>
        <translation>Symbol auswählen</translation>
    </message>
    <message>
        <source>Filter</source>
        <extracomment>The field that narrows the list to the icon names holding what is typed.</extracomment>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Icons</source>
        <translation>Symbole</translation>
    </message>
    <message>
        <source>Choose</source>
        <extracomment>Takes the icon chosen in the list.</extracomment>
        <translation>Wählen</translation>
    </message>
    <message>
        <source>Choose File…</source>
        <translation>Datei wählen …</translation>
    </message>
    <message>
        <source>Choose Icon File</source>
        <translation>Symboldatei wählen</translation>
    </message>
    <message>
        <source>Images (*.png *.svg *.svgz *.xpm)</source>
        <extracomment>The kinds of files offered as icons.</extracomment>
        <translation>Bilder (*.png *.svg *.svgz *.xpm)</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::Launcher</name>
    <message>
        <source>no desktop entry named %1</source>
        <translation>kein Desktop-Eintrag namens %1</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::NewCategoryPrompt</name>
    <message>
        <source>New Category</source>
        <translation>Neue Kategorie</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::OrganizeAppPane</name>
    <message>
        <source>Pinned</source>
        <translation>Angeheftet</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>Kategorien</translation>
    </message>
    <message>
        <source>New Category…</source>
        <translation>Neue Kategorie …</translation>
    </message>
    <message>
        <source>Get Info</source>
        <translation>Informationen</translation>
    </message>
    <message>
        <source>Choose App…</source>
        <translation>App wählen …</translation>
    </message>
    <message>
        <source>Generic name:</source>
        <translation>Allgemeiner Name:</translation>
    </message>
    <message>
        <source>Desktop file ID:</source>
        <translation>Desktop-Datei-ID:</translation>
    </message>
    <message>
        <source>No app chosen</source>
        <translation>Keine App gewählt</translation>
    </message>
    <message>
        <source>Choose App</source>
        <translation>App wählen</translation>
    </message>
    <message>
        <source>Choose</source>
        <extracomment>The picker&apos;s button that shows the chosen app in this pane.</extracomment>
        <translation>Wählen</translation>
    </message>
    <message>
        <source>Hidden</source>
        <extracomment>Leaves the app out of Pomvar&apos;s menus and search; other menus of the desktop keep it.</extracomment>
        <translation>Ausgeblendet</translation>
    </message>
    <message>
        <source>Edit…</source>
        <translation>Bearbeiten …</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::OrganizePane</name>
    <message>
        <source>Apps in the Category</source>
        <translation>Apps der Kategorie</translation>
    </message>
    <message>
        <source>Apps in “%1”</source>
        <translation>Apps in „%1“</translation>
    </message>
    <message>
        <source>Pinned Apps</source>
        <translation>Angeheftete Apps</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>Kategorien</translation>
    </message>
    <message>
        <source>Pin Apps…</source>
        <translation>Apps anheften …</translation>
    </message>
    <message>
        <source>Unpin</source>
        <extracomment>Takes the chosen apps out of the pinned apps.</extracomment>
        <translation>Lösen</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>New Category…</source>
        <translation>Neue Kategorie …</translation>
    </message>
    <message>
        <source>Rename…</source>
        <translation>Umbenennen …</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Add Apps…</source>
        <translation>Apps hinzufügen …</translation>
    </message>
    <message>
        <source>Remove</source>
        <extracomment>Takes the chosen apps out of the category; they stay installed.</extracomment>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Pin Apps</source>
        <translation>Apps anheften</translation>
    </message>
    <message>
        <source>Add Apps to “%1”</source>
        <translation>Apps zu „%1“ hinzufügen</translation>
    </message>
    <message>
        <source>Pin</source>
        <extracomment>The picker&apos;s button that pins the chosen apps, or adds them to the category.</extracomment>
        <translation>Anheften</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Rename Category</source>
        <translation>Kategorie umbenennen</translation>
    </message>
    <message>
        <source>Delete Category</source>
        <translation>Kategorie löschen</translation>
    </message>
    <message>
        <source>Delete the category “%1”?</source>
        <translation>Die Kategorie „%1“ löschen?</translation>
    </message>
    <message>
        <source>The apps in it stay installed.</source>
        <translation>Ihre Apps bleiben installiert.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::OrganizerWindow</name>
    <message>
        <source>Pomvar Organizer</source>
        <translation>Pomvar-Organizer</translation>
    </message>
    <message>
        <source>Panes</source>
        <extracomment>The organizer&apos;s tabs, as screen readers name them.</extracomment>
        <translation>Bereiche</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>Organisieren</translation>
    </message>
    <message>
        <source>Organize App</source>
        <translation>App organisieren</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::SearchAnswers</name>
    <message>
        <source>%1 · Enter copies the answer</source>
        <extracomment>The calculator&apos;s row in the search: the expression as it was read, then what Enter does.</extracomment>
        <translation>%1 · Eingabe kopiert das Ergebnis</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::SearchSettingsBox</name>
    <message>
        <source>Search</source>
        <extracomment>The settings of the search window.</extracomment>
        <translation>Suche</translation>
    </message>
    <message>
        <source>None</source>
        <extracomment>Turns the search shortcut off.</extracomment>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Show results from other apps</source>
        <translation>Ergebnisse anderer Apps zeigen</translation>
    </message>
    <message>
        <source>Search shortcut</source>
        <translation>Tastenkürzel für die Suche</translation>
    </message>
    <message>
        <source>No search shortcut</source>
        <translation>Kein Tastenkürzel für die Suche</translation>
    </message>
    <message>
        <source>Search shortcut:</source>
        <translation>Tastenkürzel für die Suche:</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::SearchWindow</name>
    <message>
        <source>Search Apps</source>
        <translation>Apps suchen</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::ServerApp</name>
    <message>
        <source>%1 could not be started.

%2</source>
        <extracomment>%1: the app&apos;s name; %2: why it could not be started.</extracomment>
        <translation>%1 konnte nicht gestartet werden.

%2</translation>
    </message>
    <message>
        <source>Pomvar set its settings file aside</source>
        <translation>Pomvar hat seine Einstellungsdatei beiseitegelegt</translation>
    </message>
    <message>
        <source>%1 could not be read as Pomvar&apos;s pins, categories and preferences. It is kept as %2, and Pomvar starts without them.</source>
        <extracomment>%1: the settings file; %2: where it was moved.</extracomment>
        <translation>%1 konnte nicht als angeheftete Apps, Kategorien und Einstellungen von Pomvar gelesen werden. Die Datei bleibt als %2 erhalten, und Pomvar startet ohne sie.</translation>
    </message>
    <message>
        <source>Pomvar could not save a change</source>
        <translation>Pomvar konnte eine Änderung nicht speichern</translation>
    </message>
    <message>
        <source>%1 cannot be written (%2): the change will not survive a restart.</source>
        <extracomment>%1: the settings file; %2: why it could not be written.</extracomment>
        <translation>%1 kann nicht geschrieben werden (%2): Die Änderung geht bei einem Neustart verloren.</translation>
    </message>
    <message>
        <source>Pomvar was not restarted</source>
        <translation>Pomvar wurde nicht neu gestartet</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::ServerWindows</name>
    <message>
        <source>No installed app has the desktop file ID “%1”.</source>
        <extracomment>%1: the app&apos;s desktop file id.</extracomment>
        <translation>Keine installierte App hat die Desktop-Datei-ID „%1“.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::SettingsPane</name>
    <message>
        <source>Normal</source>
        <extracomment>Menu density: rows of the normal height.</extracomment>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Compact</source>
        <extracomment>Menu density: rows of a smaller height.</extracomment>
        <translation>Kompakt</translation>
    </message>
    <message>
        <source>Animation effects</source>
        <translation>Animationseffekte</translation>
    </message>
    <message>
        <source>Remember expanded categories</source>
        <translation>Aufgeklappte Kategorien merken</translation>
    </message>
    <message>
        <source>Remember last menu</source>
        <translation>Zuletzt gewähltes Menü merken</translation>
    </message>
    <message>
        <source>Only one category open at a time</source>
        <translation>Immer nur eine Kategorie aufklappen</translation>
    </message>
    <message>
        <source>Start Pomvar at login</source>
        <translation>Pomvar bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Clear Recent Apps</source>
        <translation>Liste der zuletzt verwendeten Apps leeren</translation>
    </message>
    <message>
        <source>Menu density</source>
        <translation>Menüdichte</translation>
    </message>
    <message>
        <source>Menus</source>
        <translation>Menüs</translation>
    </message>
    <message>
        <source>System</source>
        <extracomment>The settings that concern the desktop session.</extracomment>
        <translation>System</translation>
    </message>
    <message>
        <source>Pomvar Organizer</source>
        <translation>Pomvar-Organizer</translation>
    </message>
    <message>
        <source>The autostart entry %1 could not be changed.</source>
        <translation>Der Autostart-Eintrag %1 konnte nicht geändert werden.</translation>
    </message>
    <message>
        <source>Undo</source>
        <extracomment>Gives back the recent apps just cleared.</extracomment>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Undo Clear Recent Apps</source>
        <translation>Leeren der zuletzt verwendeten Apps rückgängig machen</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::ShortcutRecorder</name>
    <message>
        <source>None</source>
        <extracomment>No keyboard shortcut.</extracomment>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Super</source>
        <extracomment>The Windows logo key, as Linux desktops name it.</extracomment>
        <translation>Super</translation>
    </message>
    <message>
        <source>Press the keys…</source>
        <extracomment>The shortcut button while it waits for the keys.</extracomment>
        <translation>Tasten drücken …</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::StartRefusal</name>
    <message>
        <source>Port %1 is in use by another user&apos;s Pomvar on this computer. One user at a time can run Pomvar on a computer.</source>
        <translation>Port %1 wird von Pomvar eines anderen Benutzers auf diesem Computer verwendet. Pomvar kann auf einem Computer nur von einem Benutzer gleichzeitig verwendet werden.</translation>
    </message>
    <message>
        <source>Port %1 is in use by another program.</source>
        <translation>Port %1 wird von einem anderen Programm verwendet.</translation>
    </message>
    <message>
        <source>Port %1 is in use by another program (%2).</source>
        <translation>Port %1 wird von einem anderen Programm verwendet (%2).</translation>
    </message>
    <message>
        <source>Pomvar cannot start</source>
        <translation>Pomvar kann nicht starten</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::Updates</name>
    <message>
        <source>%1 could not be started.</source>
        <translation>%1 konnte nicht gestartet werden.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::UpdatesWindow</name>
    <message>
        <source>Pomvar Updates</source>
        <translation>Pomvar-Updates</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>&amp;Restart Pomvar</source>
        <translation>Pomvar &amp;neu starten</translation>
    </message>
    <message>
        <source>Pomvar restarts as soon as its panel has closed.</source>
        <translation>Pomvar startet neu, sobald sein Panel geschlossen ist.</translation>
    </message>
    <message>
        <source>Pomvar %1 is up to date.</source>
        <translation>Pomvar %1 ist auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>Pomvar %1 is installed. Restart to use it.</source>
        <translation>Pomvar %1 ist installiert. Starten Sie Pomvar neu, um diese Version zu verwenden.</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::WelcomeCategories</name>
    <message>
        <source>Accessories</source>
        <translation>Zubehör</translation>
    </message>
    <message>
        <source>Education</source>
        <translation>Bildung</translation>
    </message>
    <message>
        <source>Games</source>
        <translation>Spiele</translation>
    </message>
    <message>
        <source>Graphics</source>
        <translation>Grafik</translation>
    </message>
    <message>
        <source>Internet</source>
        <translation>Internet</translation>
    </message>
    <message>
        <source>Office</source>
        <translation>Büro</translation>
    </message>
    <message>
        <source>Programming</source>
        <translation>Programmierung</translation>
    </message>
    <message>
        <source>Science</source>
        <translation>Wissenschaft</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Sound &amp; Video</source>
        <translation>Audio &amp; Video</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
</context>
<context>
    <name>pomvar::srv::WelcomeWindow</name>
    <message>
        <source>Welcome to Pomvar</source>
        <translation>Willkommen bei Pomvar</translation>
    </message>
    <message>
        <source>Pomvar opens your apps from one panel: your pinned apps and categories, the apps you used lately, and all of them.</source>
        <translation>Pomvar öffnet Ihre Apps aus einem Panel: Ihre angehefteten Apps und Kategorien, die zuletzt verwendeten Apps und alle installierten.</translation>
    </message>
    <message>
        <source>Its icon lives in the system tray, at a corner of the screen: click it to open the panel.</source>
        <translation>Sein Symbol befindet sich im Infobereich der Leiste, in einer Ecke des Bildschirms: Klicken Sie darauf, um das Panel zu öffnen.</translation>
    </message>
    <message>
        <source>Right-click an app there to pin it or to file it into a category.</source>
        <translation>Klicken Sie dort mit der rechten Maustaste auf eine App, um sie anzuheften oder einer Kategorie zuzuordnen.</translation>
    </message>
    <message>
        <source>Pomvar can start you off with categories made from your apps, such as Internet, Office and Games.</source>
        <extracomment>Name three of the categories &quot;Start with categories&quot; makes, as they are translated.</extracomment>
        <translation>Pomvar kann für den Anfang Kategorien aus Ihren Apps anlegen, etwa Internet, Büro und Spiele.</translation>
    </message>
    <message>
        <source>S&amp;kip</source>
        <translation>Ü&amp;berspringen</translation>
    </message>
    <message>
        <source>&amp;Start with categories</source>
        <translation>Mit &amp;Kategorien beginnen</translation>
    </message>
</context>
</TS>
