<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Vantle</name>
    <message>
        <source>This is not a whole property list.</source>
        <translation>Dies ist keine vollständige Property-Liste.</translation>
    </message>
    <message>
        <source>“%1” cannot be read: %2</source>
        <translation>„%1“ kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>“%1” does not hold a dictionary.</source>
        <translation>„%1“ enthält kein Wörterbuch.</translation>
    </message>
    <message>
        <source>The settings could not be written to “%1”.</source>
        <translation>Die Einstellungen konnten nicht in „%1“ geschrieben werden.</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>(None)</source>
        <translation>(Keine)</translation>
    </message>
    <message>
        <source>Hold Ctrl, Alt or Super</source>
        <translation>Mit Strg, Alt oder Super</translation>
    </message>
    <message>
        <source>Not usable here</source>
        <translation>Hier nicht verwendbar</translation>
    </message>
    <message>
        <source>Press the keys</source>
        <translation>Tasten drücken</translation>
    </message>
    <message>
        <source>Click to record</source>
        <translation>Klicken zum Aufnehmen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Recording: %1</source>
        <translation>Aufnahme: %1</translation>
    </message>
    <message>
        <source>Press Space, then the keys. Escape leaves it as it was, Delete clears it.</source>
        <translation>Leertaste drücken, dann die Tasten. Esc lässt es, wie es war, Entf löscht es.</translation>
    </message>
    <message>
        <source>Records the next key combination</source>
        <translation>Nimmt die nächste Tastenkombination auf</translation>
    </message>
    <message>
        <source>Takes the key combination away</source>
        <translation>Entfernt die Tastenkombination</translation>
    </message>
    <message>
        <source>Return</source>
        <comment>key</comment>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Tab</source>
        <comment>key</comment>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Space</source>
        <comment>key</comment>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Backspace</source>
        <comment>key</comment>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Escape</source>
        <comment>key</comment>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Right Super</source>
        <comment>key</comment>
        <translation>Super rechts</translation>
    </message>
    <message>
        <source>Super</source>
        <comment>key</comment>
        <translation>Super</translation>
    </message>
    <message>
        <source>Shift</source>
        <comment>key</comment>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Caps Lock</source>
        <comment>key</comment>
        <translation>Feststelltaste</translation>
    </message>
    <message>
        <source>Alt</source>
        <comment>key</comment>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <comment>key</comment>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Right Shift</source>
        <comment>key</comment>
        <translation>Umschalt rechts</translation>
    </message>
    <message>
        <source>Right Alt</source>
        <comment>key</comment>
        <translation>Alt rechts</translation>
    </message>
    <message>
        <source>Right Ctrl</source>
        <comment>key</comment>
        <translation>Strg rechts</translation>
    </message>
    <message>
        <source>Fn</source>
        <comment>key</comment>
        <translation>Fn</translation>
    </message>
    <message>
        <source>Num Lock</source>
        <comment>key</comment>
        <translation>Num</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <comment>key</comment>
        <translation>Lauter</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <comment>key</comment>
        <translation>Leiser</translation>
    </message>
    <message>
        <source>Mute</source>
        <comment>key</comment>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Pad Enter</source>
        <comment>key</comment>
        <translation>Ziffernblock Enter</translation>
    </message>
    <message>
        <source>Pad ,</source>
        <comment>key</comment>
        <translation>Ziffernblock ,</translation>
    </message>
    <message>
        <source>Eisu</source>
        <comment>key</comment>
        <translation>Eisu</translation>
    </message>
    <message>
        <source>Kana</source>
        <comment>key</comment>
        <translation>Kana</translation>
    </message>
    <message>
        <source>Menu</source>
        <comment>key</comment>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Insert</source>
        <comment>key</comment>
        <translation>Einfg</translation>
    </message>
    <message>
        <source>Home</source>
        <comment>key</comment>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>Page Up</source>
        <comment>key</comment>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>Delete</source>
        <comment>key</comment>
        <translation>Entf</translation>
    </message>
    <message>
        <source>End</source>
        <comment>key</comment>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Page Down</source>
        <comment>key</comment>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Left</source>
        <comment>key</comment>
        <translation>Links</translation>
    </message>
    <message>
        <source>Right</source>
        <comment>key</comment>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Down</source>
        <comment>key</comment>
        <translation>Ab</translation>
    </message>
    <message>
        <source>Up</source>
        <comment>key</comment>
        <translation>Auf</translation>
    </message>
    <message>
        <source>Pad</source>
        <comment>key</comment>
        <translation>Ziffernblock</translation>
    </message>
    <message>
        <source>No calendar was chosen for it.</source>
        <translation>Es ist kein Kalender dafür gewählt.</translation>
    </message>
    <message>
        <source>The calendar does not exist any more.</source>
        <translation>Den Kalender gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>The calendar cannot be changed.</source>
        <translation>Der Kalender kann nicht geändert werden.</translation>
    </message>
    <message>
        <source>The calendar cannot hold to-dos.</source>
        <translation>Der Kalender kann keine Aufgaben enthalten.</translation>
    </message>
    <message>
        <source>“%1” was not saved.</source>
        <translation>„%1“ wurde nicht gesichert.</translation>
    </message>
    <message>
        <source>“%1” in the calendar “%2” was not saved.</source>
        <translation>„%1“ im Kalender „%2“ wurde nicht gesichert.</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Privat</translation>
    </message>
    <message>
        <source>Work</source>
        <translation>Arbeit</translation>
    </message>
    <message>
        <source>Another program has changed it meanwhile. That version was kept.</source>
        <translation>Ein anderes Programm hat es inzwischen geändert. Diese Fassung bleibt erhalten.</translation>
    </message>
    <message>
        <source>Another program has removed or renamed it meanwhile.</source>
        <translation>Ein anderes Programm hat es inzwischen entfernt oder umbenannt.</translation>
    </message>
    <message>
        <source>The calendar is not there any more.</source>
        <translation>Der Kalender ist nicht mehr da.</translation>
    </message>
    <message>
        <source>It is kept in a linked file, which is not written to.</source>
        <translation>Es liegt in einer verknüpften Datei, in die nicht geschrieben wird.</translation>
    </message>
    <message>
        <source>Its file is damaged and was left as it is.</source>
        <translation>Die Datei ist beschädigt und wurde so gelassen, wie sie ist.</translation>
    </message>
    <message>
        <source>Open this link with another program?</source>
        <translation>Diesen Link mit einem anderen Programm öffnen?</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>The folder “%1” cannot be made.</source>
        <translation>Der Ordner „%1“ kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>Date bar</source>
        <translation>Datumsleiste</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Previous Week</source>
        <translation>Vorige Woche</translation>
    </message>
    <message>
        <source>Previous Day</source>
        <translation>Voriger Tag</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Next Day</source>
        <translation>Nächster Tag</translation>
    </message>
    <message>
        <source>Next Week</source>
        <translation>Nächste Woche</translation>
    </message>
    <message>
        <source>Shown day</source>
        <translation>Gezeigter Tag</translation>
    </message>
    <message>
        <source>dddd, d MMMM</source>
        <extracomment>The pattern of a long date without its year; the letters stay, their order and the rest are yours.</extracomment>
        <translation>dddd, d. MMMM</translation>
    </message>
    <message>
        <source>dddd, d MMMM yyyy</source>
        <extracomment>The pattern of a long date with its year; the letters stay, their order and the rest are yours.</extracomment>
        <translation>dddd, d. MMMM yyyy</translation>
    </message>
    <message>
        <source>Events</source>
        <translation>Termine</translation>
    </message>
    <message>
        <source>To dos</source>
        <translation>Aufgaben</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Hide Date Bar</source>
        <translation>Datumsleiste ausblenden</translation>
    </message>
    <message>
        <source>Show Date Bar</source>
        <translation>Datumsleiste einblenden</translation>
    </message>
    <message>
        <source>Hide Calendars Drawer</source>
        <translation>Kalenderliste ausblenden</translation>
    </message>
    <message>
        <source>Show Calendars Drawer</source>
        <translation>Kalenderliste einblenden</translation>
    </message>
    <message>
        <source>No events scheduled</source>
        <translation>Keine Termine</translation>
    </message>
    <message>
        <source>No to dos</source>
        <translation>Keine Aufgaben</translation>
    </message>
    <message>
        <source>repeats</source>
        <translation>wiederholt sich</translation>
    </message>
    <message>
        <source>has an alarm</source>
        <translation>mit Erinnerung</translation>
    </message>
    <message>
        <source>has attendees</source>
        <translation>mit Teilnehmern</translation>
    </message>
    <message>
        <source>has notes</source>
        <translation>mit Notizen</translation>
    </message>
    <message>
        <source>has a link</source>
        <translation>mit Link</translation>
    </message>
    <message>
        <source>location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>attendees</source>
        <translation>Gäste</translation>
    </message>
    <message>
        <source>url</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>notes</source>
        <translation>Notizen</translation>
    </message>
    <message>
        <source>all day</source>
        <translation>ganztägig</translation>
    </message>
    <message>
        <source>Anon</source>
        <translation>Anonym</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <extracomment>The start and the end of an event, for screen readers</extracomment>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>abgesagt</translation>
    </message>
    <message>
        <source>high priority</source>
        <translation>hohe Priorität</translation>
    </message>
    <message>
        <source>medium priority</source>
        <translation>mittlere Priorität</translation>
    </message>
    <message>
        <source>low priority</source>
        <translation>niedrige Priorität</translation>
    </message>
    <message>
        <source>completed</source>
        <translation>erledigt</translation>
    </message>
    <message>
        <source>d MMM</source>
        <translation>d. MMM</translation>
    </message>
    <message>
        <source>today</source>
        <translation>heute</translation>
    </message>
    <message>
        <source>tomorrow</source>
        <translation>morgen</translation>
    </message>
    <message>
        <source>yesterday</source>
        <translation>gestern</translation>
    </message>
    <message>
        <source>ddd d MMM</source>
        <translation>ddd d. MMM</translation>
    </message>
    <message>
        <source>d MMM yyyy</source>
        <translation>d. MMM yyyy</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <extracomment>A day (&quot;yesterday&quot;, &quot;Mon 23 Nov&quot;) and a time of day</extracomment>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>due %1</source>
        <extracomment>When a to-do is due: &quot;due yesterday, 18:00&quot;, &quot;due Sun 22 Nov&quot;</extracomment>
        <translation>fällig %1</translation>
    </message>
    <message>
        <source>The calendar cannot hold events.</source>
        <translation>Der Kalender kann keine Termine enthalten.</translation>
    </message>
    <message>
        <source>It cannot be moved out of a calendar that cannot be changed.</source>
        <translation>Es kann nicht aus einem Kalender verschoben werden, der sich nicht ändern lässt.</translation>
    </message>
    <message>
        <source>It has never been saved.</source>
        <translation>Es wurde nie gesichert.</translation>
    </message>
    <message>
        <source>“%1” was not deleted.</source>
        <translation>„%1“ wurde nicht gelöscht.</translation>
    </message>
    <message>
        <source>“%1” was not restored.</source>
        <translation>„%1“ wurde nicht wiederhergestellt.</translation>
    </message>
    <message>
        <source>“%1” in the calendar “%2” was not deleted.</source>
        <translation>„%1“ im Kalender „%2“ wurde nicht gelöscht.</translation>
    </message>
    <message>
        <source>“%1” in the calendar “%2” was not restored.</source>
        <translation>„%1“ im Kalender „%2“ wurde nicht wiederhergestellt.</translation>
    </message>
    <message>
        <source>display a message</source>
        <translation>eine Nachricht zeigen</translation>
    </message>
    <message>
        <source>display a message and play %1 alert sound</source>
        <translation>eine Nachricht zeigen und den Ton %1 spielen</translation>
    </message>
    <message>
        <source>send an email to %1</source>
        <translation>eine E-Mail an %1 senden</translation>
    </message>
    <message>
        <source>open %1</source>
        <translation>%1 öffnen</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source>hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source>before</source>
        <translation>vorher</translation>
    </message>
    <message>
        <source>after</source>
        <translation>nachher</translation>
    </message>
    <message>
        <source>On %1, %2</source>
        <translation>Am %1, %2</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Calendars drawer</source>
        <translation>Kalender-Seitenleiste</translation>
    </message>
    <message>
        <source>Show all calendars</source>
        <translation>Alle Kalender zeigen</translation>
    </message>
    <message>
        <source>Show no calendar</source>
        <translation>Keinen Kalender zeigen</translation>
    </message>
    <message>
        <source>Calendars</source>
        <translation>Kalender</translation>
    </message>
    <message>
        <source>Go to date</source>
        <translation>Gehe zu Datum</translation>
    </message>
    <message>
        <source>Go to Date</source>
        <translation>Gehe zu Datum</translation>
    </message>
    <message>
        <source>Days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>Go</source>
        <translation>Gehe zu</translation>
    </message>
    <message>
        <source>To Dos</source>
        <translation>Aufgaben</translation>
    </message>
    <message>
        <source>Sort by Due Date</source>
        <translation>Nach Fälligkeit sortieren</translation>
    </message>
    <message>
        <source>Sort by Priority</source>
        <translation>Nach Priorität sortieren</translation>
    </message>
    <message>
        <source>Sort by Title</source>
        <translation>Nach Titel sortieren</translation>
    </message>
    <message>
        <source>Show All Completed</source>
        <translation>Alle erledigten zeigen</translation>
    </message>
    <message>
        <source>Hide Due After This Week</source>
        <translation>Nach dieser Woche Fällige ausblenden</translation>
    </message>
    <message>
        <source>Another file has taken its place.</source>
        <translation>Eine andere Datei hat seinen Platz eingenommen.</translation>
    </message>
    <message>
        <source>It is there again already.</source>
        <translation>Es ist bereits wieder da.</translation>
    </message>
    <message>
        <source>An event needs a start and an end.</source>
        <translation>Ein Termin braucht einen Anfang und ein Ende.</translation>
    </message>
    <message>
        <source>The calendar already holds an item with the same identifier.</source>
        <translation>Der Kalender enthält bereits einen Eintrag mit derselben Kennung.</translation>
    </message>
    <message>
        <source>Choose a File</source>
        <translation>Datei wählen</translation>
    </message>
    <message>
        <source>Alarm</source>
        <translation>Erinnerung</translation>
    </message>
    <message>
        <source>When</source>
        <translation>Wann</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
    <message>
        <source>At a date and time</source>
        <translation>Zu einem Zeitpunkt</translation>
    </message>
    <message>
        <source>Show a message</source>
        <translation>Eine Nachricht zeigen</translation>
    </message>
    <message>
        <source>Send an e-mail</source>
        <translation>Eine E-Mail senden</translation>
    </message>
    <message>
        <source>Open a file</source>
        <translation>Eine Datei öffnen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>name@example.org</source>
        <translation>name@example.org</translation>
    </message>
    <message>
        <source>How long</source>
        <translation>Wie lange</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Before or after</source>
        <translation>Vorher oder nachher</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>E-mail address</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>No sound</source>
        <translation>Kein Ton</translation>
    </message>
    <message>
        <source>select file</source>
        <translation>Datei wählen</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Calendar</source>
        <translation>Kalender</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notizen</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Erinnerungen</translation>
    </message>
    <message>
        <source>Edit Alarm</source>
        <translation>Erinnerung bearbeiten</translation>
    </message>
    <message>
        <source>Add Alarm</source>
        <translation>Erinnerung hinzufügen</translation>
    </message>
    <message>
        <source>Remove Alarm</source>
        <translation>Erinnerung entfernen</translation>
    </message>
    <message>
        <source>Choose a calendar</source>
        <translation>Kalender wählen</translation>
    </message>
    <message>
        <source>Relative to the event</source>
        <translation>Bezogen auf den Termin</translation>
    </message>
    <message>
        <source>Event</source>
        <translation>Termin</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Starts</source>
        <translation>Beginn</translation>
    </message>
    <message>
        <source>Ends</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Repeats</source>
        <translation>Wiederholung</translation>
    </message>
    <message>
        <source>All day</source>
        <translation>Ganztägig</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>This event repeats %1. Saving changes all its occurrences.</source>
        <translation>Dieser Termin wiederholt sich %1. Sichern ändert alle seine Vorkommen.</translation>
    </message>
    <message>
        <source>by a rule of its own</source>
        <translation>nach einer eigenen Regel</translation>
    </message>
    <message>
        <source>every day</source>
        <translation>jeden Tag</translation>
    </message>
    <message>
        <source>every %1 days</source>
        <translation>alle %1 Tage</translation>
    </message>
    <message>
        <source>every week</source>
        <translation>jede Woche</translation>
    </message>
    <message>
        <source>every %1 weeks</source>
        <translation>alle %1 Wochen</translation>
    </message>
    <message>
        <source>every month</source>
        <translation>jeden Monat</translation>
    </message>
    <message>
        <source>every %1 months</source>
        <translation>alle %1 Monate</translation>
    </message>
    <message>
        <source>every year</source>
        <translation>jedes Jahr</translation>
    </message>
    <message>
        <source>every %1 years</source>
        <translation>alle %1 Jahre</translation>
    </message>
    <message>
        <source>on %1</source>
        <translation>am %1</translation>
    </message>
    <message>
        <source>on day %1</source>
        <translation>am %1. Tag</translation>
    </message>
    <message>
        <source>%1 times in all</source>
        <translation>insgesamt %1 Mal</translation>
    </message>
    <message>
        <source>until %1</source>
        <translation>bis %1</translation>
    </message>
    <message>
        <source>Relative to the due date</source>
        <translation>Bezogen auf die Fälligkeit</translation>
    </message>
    <message>
        <source>To do</source>
        <translation>Aufgabe</translation>
    </message>
    <message>
        <source>Priority</source>
        <translation>Priorität</translation>
    </message>
    <message>
        <source>Due</source>
        <translation>Fällig</translation>
    </message>
    <message>
        <source>Has a due date</source>
        <translation>Hat ein Fälligkeitsdatum</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>New Event</source>
        <translation>Neuer Termin</translation>
    </message>
    <message>
        <source>New To Do</source>
        <translation>Neue Aufgabe</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Undo Delete</source>
        <translation>Löschen rückgängig machen</translation>
    </message>
    <message>
        <source>Show in Calendar Application</source>
        <translation>Im Kalenderprogramm zeigen</translation>
    </message>
    <message>
        <source>Selected item</source>
        <translation>Ausgewählter Eintrag</translation>
    </message>
    <message>
        <source>New event</source>
        <translation>Neuer Termin</translation>
    </message>
    <message>
        <source>New to do</source>
        <translation>Neue Aufgabe</translation>
    </message>
    <message>
        <source>Delete This Occurrence</source>
        <translation>Dieses Vorkommen löschen</translation>
    </message>
    <message>
        <source>Undo Delete of “%1”</source>
        <translation>Löschen von „%1“ rückgängig machen</translation>
    </message>
    <message>
        <source>The event does not repeat on that day any more.</source>
        <translation>Der Termin wiederholt sich an diesem Tag nicht mehr.</translation>
    </message>
    <message>
        <source>Divider</source>
        <translation>Trennlinie</translation>
    </message>
    <message>
        <source>Up and Down move it, Home and End hide one of the lists.</source>
        <translation>Auf und Ab bewegen sie, Pos1 und Ende blenden eine der Listen aus.</translation>
    </message>
    <message>
        <source>Select Row Above</source>
        <translation>Zeile darüber auswählen</translation>
    </message>
    <message>
        <source>Select Row Below</source>
        <translation>Zeile darunter auswählen</translation>
    </message>
    <message>
        <source>Next Control</source>
        <translation>Nächstes Bedienelement</translation>
    </message>
    <message>
        <source>Use Control</source>
        <translation>Bedienelement betätigen</translation>
    </message>
    <message>
        <source>Show or Hide Date Bar</source>
        <translation>Datumsleiste ein-/ausblenden</translation>
    </message>
    <message>
        <source>Show or Hide Calendars</source>
        <translation>Kalender ein-/ausblenden</translation>
    </message>
    <message>
        <source>Show Events and To Dos</source>
        <translation>Termine und Aufgaben zeigen</translation>
    </message>
    <message>
        <source>Show Events Only</source>
        <translation>Nur Termine zeigen</translation>
    </message>
    <message>
        <source>Show To Dos Only</source>
        <translation>Nur Aufgaben zeigen</translation>
    </message>
    <message>
        <source>Move Divider</source>
        <translation>Trennlinie bewegen</translation>
    </message>
    <message>
        <source>Open Menu</source>
        <translation>Menü öffnen</translation>
    </message>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Some calendars may be out of date: their service does not answer.</source>
        <translation>Manche Kalender sind möglicherweise veraltet: Ihr Dienst antwortet nicht.</translation>
    </message>
    <message>
        <source>active</source>
        <comment>hot key</comment>
        <translation>aktiv</translation>
    </message>
    <message>
        <source>taken</source>
        <comment>hot key</comment>
        <translation>vergeben</translation>
    </message>
    <message>
        <source>refused</source>
        <comment>hot key</comment>
        <translation>abgelehnt</translation>
    </message>
    <message>
        <source>waiting</source>
        <comment>hot key</comment>
        <translation>wartet</translation>
    </message>
    <message>
        <source>not offered</source>
        <comment>hot key</comment>
        <translation>nicht angeboten</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Show Vantle in</source>
        <translation>Vantle zeigen in</translation>
    </message>
    <message>
        <source>&amp;Task bar and menu bar</source>
        <translation>&amp;Taskleiste und Menüleiste</translation>
    </message>
    <message>
        <source>Task bar &amp;only</source>
        <translation>&amp;Nur in der Taskleiste</translation>
    </message>
    <message>
        <source>&amp;Menu bar only</source>
        <translation>Nur in der &amp;Menüleiste</translation>
    </message>
    <message>
        <source>&amp;Hide when another program is in front</source>
        <translation>&amp;Ausblenden, wenn ein anderes Programm vorn ist</translation>
    </message>
    <message>
        <source>Start when I &amp;log in</source>
        <translation>&amp;Beim Anmelden starten</translation>
    </message>
    <message>
        <source>Hot keys</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>&amp;Show or hide</source>
        <translation>&amp;Zeigen oder ausblenden</translation>
    </message>
    <message>
        <source>New &amp;event</source>
        <translation>Neuer Te&amp;rmin</translation>
    </message>
    <message>
        <source>New to-&amp;do</source>
        <translation>Neue Auf&amp;gabe</translation>
    </message>
    <message>
        <source>Command for “%1”: %2</source>
        <translation>Befehl für „%1“: %2</translation>
    </message>
    <message>
        <source>This desktop shows no menu-bar icons at present. Start Vantle once more to bring its window back.</source>
        <translation>Dieser Desktop zeigt zurzeit keine Symbole in der Menüleiste. Vantle noch einmal zu starten bringt sein Fenster zurück.</translation>
    </message>
    <message>
        <source>On this desktop an open window always has its task-bar entry.</source>
        <translation>Auf diesem Desktop hat ein offenes Fenster immer einen Eintrag in der Taskleiste.</translation>
    </message>
    <message>
        <source>The task-bar entry goes when Vantle is started the next time.</source>
        <translation>Der Eintrag in der Taskleiste verschwindet beim nächsten Start von Vantle.</translation>
    </message>
    <message>
        <source>You can also bind a command in your desktop’s keyboard settings:</source>
        <translation>In den Tastatureinstellungen des Desktops lässt sich auch ein Befehl belegen:</translation>
    </message>
    <message>
        <source>This could not be changed: %1</source>
        <translation>Das ließ sich nicht ändern: %1</translation>
    </message>
    <message>
        <source>Account Settings…</source>
        <translation>Konteneinstellungen …</translation>
    </message>
    <message>
        <source>Open the account settings</source>
        <translation>Konteneinstellungen öffnen</translation>
    </message>
    <message>
        <source>The account asks for its password. Until it is given in the account settings, this calendar may be out of date.</source>
        <translation>Das Konto verlangt sein Passwort. Bis es in den Konteneinstellungen eingegeben ist, kann dieser Kalender veraltet sein.</translation>
    </message>
    <message>
        <source>The server is not reached. Until it is, this calendar may be out of date.</source>
        <translation>Der Server ist nicht erreichbar. So lange kann dieser Kalender veraltet sein.</translation>
    </message>
    <message>
        <source>Vantle cannot open the account settings of this desktop.
Give the account&apos;s password in the program that manages your calendars.</source>
        <translation>Vantle kann die Konteneinstellungen dieser Arbeitsumgebung nicht öffnen.
Geben Sie das Passwort des Kontos in dem Programm ein, das Ihre Kalender verwaltet.</translation>
    </message>
    <message>
        <source>Month</source>
        <translation>Monat</translation>
    </message>
    <message>
        <source>Previous Month</source>
        <translation>Voriger Monat</translation>
    </message>
    <message>
        <source>Next Month</source>
        <translation>Nächster Monat</translation>
    </message>
    <message>
        <source>Tick Selected To Do</source>
        <translation>Ausgewählte Aufgabe abhaken</translation>
    </message>
    <message>
        <source>Events and To Dos</source>
        <translation>Termine und Aufgaben</translation>
    </message>
    <message>
        <source>Events and to dos</source>
        <translation>Termine und Aufgaben</translation>
    </message>
    <message>
        <source>It repeats by a pattern that cannot follow there, such as the last working day of a month.</source>
        <translation>Er wiederholt sich nach einem Muster, das dorthin nicht folgen kann, zum Beispiel am letzten Arbeitstag eines Monats.</translation>
    </message>
    <message>
        <source>It cannot be moved into a calendar of another kind of storage.</source>
        <translation>In einen Kalender mit anderer Ablage kann es nicht verschoben werden.</translation>
    </message>
    <message>
        <source>It is in both calendars now: it could not be taken out of “%1”.</source>
        <translation>Es steht jetzt in beiden Kalendern: Aus „%1“ konnte es nicht entfernt werden.</translation>
    </message>
    <message>
        <source>The calendar service cannot store it like this.</source>
        <translation>Der Kalenderdienst kann es so nicht speichern.</translation>
    </message>
    <message>
        <source>The calendar service does not answer.</source>
        <translation>Der Kalenderdienst antwortet nicht.</translation>
    </message>
    <message>
        <source>The calendar service is not there at the moment.</source>
        <translation>Der Kalenderdienst ist gerade nicht da.</translation>
    </message>
    <message>
        <source>Show or hide Vantle</source>
        <translation>Vantle zeigen oder verbergen</translation>
    </message>
    <message>
        <source>Show Vantle</source>
        <translation>Vantle zeigen</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Quit Vantle</source>
        <translation>Vantle beenden</translation>
    </message>
    <message>
        <source>Another program already uses these keys. Choose others.</source>
        <translation>Ein anderes Programm verwendet diese Tasten schon. Bitte andere wählen.</translation>
    </message>
    <message>
        <source>These keys already belong to another hot key of Vantle. Choose others.</source>
        <translation>Diese Tasten gehören schon zu einem anderen Kürzel von Vantle. Bitte andere wählen.</translation>
    </message>
    <message>
        <source>This keyboard does not have that key. Choose another.</source>
        <translation>Diese Tastatur hat die Taste nicht. Bitte eine andere wählen.</translation>
    </message>
    <message>
        <source>This keyboard does not have that modifier key. Choose another combination.</source>
        <translation>Diese Tastatur hat die Umschalttaste nicht. Bitte eine andere Kombination wählen.</translation>
    </message>
    <message>
        <source>Active.</source>
        <translation>Aktiv.</translation>
    </message>
    <message>
        <source>Active. The desktop’s name for it: %1</source>
        <translation>Aktiv. Beim Desktop heißt es: %1</translation>
    </message>
    <message>
        <source>Waiting for the desktop to allow it.</source>
        <translation>Wartet auf die Erlaubnis des Desktops.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys to programs.</source>
        <translation>Dieser Desktop bietet Programmen keine globalen Tastenkürzel.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys to programs. Bind this command in its keyboard settings: %1</source>
        <translation>Dieser Desktop bietet Programmen keine globalen Tastenkürzel. In seinen Tastatureinstellungen lässt sich dieser Befehl belegen: %1</translation>
    </message>
    <message>
        <source>It was declined when the desktop asked. Change it to be asked again.</source>
        <translation>Es wurde abgelehnt, als der Desktop fragte. Wer es ändert, wird noch einmal gefragt.</translation>
    </message>
    <message>
        <source>The desktop did not set it up.</source>
        <translation>Der Desktop hat es nicht eingerichtet.</translation>
    </message>
    <message>
        <source>The desktop gave it no keys. Choose them in the desktop’s settings.</source>
        <translation>Der Desktop hat ihm keine Tasten gegeben. Sie lassen sich in seinen Einstellungen wählen.</translation>
    </message>
    <message>
        <source>“%1” is too long.</source>
        <translation>„%1“ ist zu lang.</translation>
    </message>
    <message>
        <source>“%1” cannot be started.</source>
        <translation>„%1“ lässt sich nicht starten.</translation>
    </message>
    <message>
        <source>About Vantle</source>
        <translation>Über Vantle</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Licence: %1</source>
        <translation>Lizenz: %1</translation>
    </message>
    <message>
        <source>&amp;Website…</source>
        <translation>&amp;Webseite …</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Open Calendar Application</source>
        <translation>Kalenderprogramm öffnen</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Send Feedback…</source>
        <translation>Rückmeldung senden …</translation>
    </message>
    <message>
        <source>Crash Report</source>
        <translation>Absturzbericht</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>Rückmeldung</translation>
    </message>
    <message>
        <source>Vantle ended unexpectedly the last time. You can tell the developers about it: nothing is sent unless you send it.</source>
        <translation>Vantle wurde beim letzten Mal unerwartet beendet. Sie können es den Entwicklern berichten: Nichts wird gesendet, wenn Sie es nicht selbst senden.</translation>
    </message>
    <message>
        <source>Tell the developers what is missing or goes wrong, or what you like. Nothing is sent unless you send it.</source>
        <translation>Schreiben Sie den Entwicklern, was fehlt oder nicht klappt oder was Ihnen gefällt. Nichts wird gesendet, wenn Sie es nicht selbst senden.</translation>
    </message>
    <message>
        <source>&amp;Message</source>
        <translation>&amp;Nachricht</translation>
    </message>
    <message>
        <source>What did you do when it happened?</source>
        <translation>Was haben Sie gerade getan?</translation>
    </message>
    <message>
        <source>What did you do, and what did you expect?</source>
        <translation>Was haben Sie getan, und was haben Sie erwartet?</translation>
    </message>
    <message>
        <source>&amp;Details, which you can change</source>
        <translation>&amp;Einzelheiten, die Sie ändern können</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Save…</source>
        <translation>&amp;Sichern …</translation>
    </message>
    <message>
        <source>&amp;Issue Page…</source>
        <translation>&amp;Fehlerseite …</translation>
    </message>
    <message>
        <source>&amp;E-Mail…</source>
        <translation>E-&amp;Mail …</translation>
    </message>
    <message>
        <source>Crash of %1</source>
        <translation>Absturz von %1</translation>
    </message>
    <message>
        <source>Feedback on %1</source>
        <translation>Rückmeldung zu %1</translation>
    </message>
    <message>
        <source>[The whole report is in the clipboard: please paste it here.]</source>
        <translation>[Der ganze Bericht ist in der Zwischenablage: bitte hier einfügen.]</translation>
    </message>
    <message>
        <source>The report could not be saved.</source>
        <translation>Der Bericht konnte nicht gesichert werden.</translation>
    </message>
    <message>
        <source>Not set.</source>
        <translation>Nicht festgelegt.</translation>
    </message>
    <message>
        <source>%1, %2 and %3 more</source>
        <extracomment>%1 and %2: names of calendars. %3: how many there are besides, always several.</extracomment>
        <translation>%1, %2 und %3 weitere</translation>
    </message>
    <message>
        <source>%1 may be out of date: the service does not answer.</source>
        <extracomment>%1: the names of one or several calendars.</extracomment>
        <translation>Möglicherweise veraltet: %1. Der Dienst antwortet nicht.</translation>
    </message>
    <message>
        <source>The desktop’s calendars are missing: their service does not answer.</source>
        <translation>Die Kalender des Desktops fehlen: Ihr Dienst antwortet nicht.</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Frage</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>The calendar service did not answer in time. It may still make the change later.</source>
        <translation>Der Kalenderdienst hat nicht rechtzeitig geantwortet. Er nimmt die Änderung vielleicht später noch vor.</translation>
    </message>
    <message>
        <source>Another program has overwritten the change a moment later. Its version was kept.</source>
        <translation>Ein anderes Programm hat die Änderung einen Augenblick später überschrieben. Seine Fassung wurde behalten.</translation>
    </message>
</context>
</TS>
