<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>AreaClipboard</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Cop&amp;y with Headers</source>
        <translation>Mit Ü&amp;berschriften kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>row %1, column %2 of the block</source>
        <translation>Zeile %1, Spalte %2 des Blocks</translation>
    </message>
    <message>
        <source>record %1, %2, &quot;%3&quot;</source>
        <translation>Datensatz %1, %2, &quot;%3&quot;</translation>
    </message>
    <message>
        <source>%1 pasted values lay outside the selection (first: %2)</source>
        <translation>%1 eingefügte Werte lagen außerhalb der Auswahl (der erste: %2)</translation>
    </message>
    <message>
        <source>%1 are stored otherwise (first: %2)</source>
        <translation>%1 sind anders gespeichert (der erste: %2)</translation>
    </message>
    <message>
        <source>1 is stored otherwise (%1)</source>
        <translation>1 ist anders gespeichert (%1)</translation>
    </message>
    <message>
        <source>1 pasted value lay outside the selection (%1)</source>
        <translation>1 eingefügter Wert lag außerhalb der Auswahl (%1)</translation>
    </message>
</context>
<context>
    <name>CarryCommands</name>
    <message>
        <source>&amp;Carry Cells Across</source>
        <translation>Zellen ü&amp;bertragen</translation>
    </message>
    <message>
        <source>Carry &amp;Record Across</source>
        <translation>Datensatz über&amp;tragen</translation>
    </message>
    <message>
        <source>Carry Ta&amp;ble Across</source>
        <translation>T&amp;abelle übertragen</translation>
    </message>
    <message>
        <source>Carry these values too? With No the cells that would not take them stay as they are.</source>
        <translation>Auch diese Werte übertragen? Mit Nein bleiben die Zellen, die sie nicht annähmen, wie sie sind.</translation>
    </message>
    <message>
        <source>Carry the values all the same?</source>
        <translation>Die Werte trotzdem übertragen?</translation>
    </message>
    <message>
        <source>Cells are carried where both sides show the same table</source>
        <translation>Zellen werden übertragen, wo beide Seiten dieselbe Tabelle zeigen</translation>
    </message>
    <message>
        <source>The other side does not have all of the selected cells.</source>
        <translation>Die andere Seite hat nicht alle der ausgewählten Zellen.</translation>
    </message>
    <message>
        <source>There is no record here that the other side&apos;s table could take.</source>
        <translation>Hier ist kein Datensatz, den die Tabelle der anderen Seite aufnehmen könnte.</translation>
    </message>
    <message>
        <source>Carried record of %1</source>
        <translation>Datensatz von %1 übertragen</translation>
    </message>
    <message>
        <source>Added as record %1</source>
        <translation>Als Datensatz %1 hinzugefügt</translation>
    </message>
    <message>
        <source>The table to be carried stands on the other side only.</source>
        <translation>Die zu übertragende Tabelle steht nur auf der anderen Seite.</translation>
    </message>
    <message>
        <source>Copy table &apos;%1&apos; to the other side, which has none of this name? Records: %2.</source>
        <translation>Tabelle &apos;%1&apos; auf die andere Seite kopieren, die keine dieses Namens hat? Datensätze: %2.</translation>
    </message>
    <message>
        <source>A table is carried where both sides show the same one.</source>
        <translation>Eine Tabelle wird übertragen, wo beide Seiten dieselbe zeigen.</translation>
    </message>
    <message>
        <source>The records are equal</source>
        <translation>Die Datensätze sind gleich</translation>
    </message>
    <message>
        <source>Make the records of table &apos;%1&apos; on the %2 equal to those on the %3?
Changed: %4, added: %5, removed: %6.</source>
        <translation>Die Datensätze der Tabelle &apos;%1&apos; %2 denen %3 gleich machen?
Geändert: %4, hinzugefügt: %5, entfernt: %6.</translation>
    </message>
    <message>
        <source>right</source>
        <translation>rechts</translation>
    </message>
    <message>
        <source>left</source>
        <translation>links</translation>
    </message>
    <message>
        <source>Fields that only one side has stay as they are.</source>
        <translation>Felder, die nur eine Seite hat, bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Changed: %1, added: %2, removed: %3</source>
        <translation>Geändert: %1, hinzugefügt: %2, entfernt: %3</translation>
    </message>
    <message>
        <source>Carried table %1</source>
        <translation>Tabelle %1 übertragen</translation>
    </message>
    <message>
        <source>The cells are equal</source>
        <translation>Die Zellen sind gleich</translation>
    </message>
    <message>
        <source>The record goes without these fields, which the other side lacks: %1.</source>
        <translation>Der Datensatz geht ohne diese Felder, die der anderen Seite fehlen: %1.</translation>
    </message>
</context>
<context>
    <name>CarryLosses</name>
    <message>
        <source>&apos;%1&apos; in record %2, field &apos;%3&apos;</source>
        <translation>&apos;%1&apos; in Datensatz %2, Feld &apos;%3&apos;</translation>
    </message>
    <message>
        <source>Field &apos;%1&apos; is %2 on the left and %3 on the right.</source>
        <translation>Feld &apos;%1&apos; ist links %2 und rechts %3.</translation>
    </message>
    <message>
        <source>So are %1 more fields.</source>
        <translation>So auch %1 weitere Felder.</translation>
    </message>
    <message>
        <source>One value would not stay what it is: %1.</source>
        <translation>Ein Wert bliebe nicht, was er ist: %1.</translation>
    </message>
    <message>
        <source>%1 values would not stay what they are, the first is %2.</source>
        <translation>%1 Werte blieben nicht, was sie sind, der erste ist %2.</translation>
    </message>
</context>
<context>
    <name>CellSearch</name>
    <message>
        <source>No regular expression: %1 (at character %2)</source>
        <translation>Kein regulärer Ausdruck: %1 (bei Zeichen %2)</translation>
    </message>
</context>
<context>
    <name>CloneCommands</name>
    <message>
        <source>&amp;Copy to Other Database</source>
        <translation>In die andere Datenbank &amp;kopieren</translation>
    </message>
    <message>
        <source>Make Other Table as &amp;Long</source>
        <translation>Andere Tabelle ebenso &amp;lang machen</translation>
    </message>
    <message>
        <source>&amp;Copy Selection to Other Table</source>
        <translation>Auswahl in die andere Tabelle &amp;kopieren</translation>
    </message>
    <message>
        <source>Copy of table %1</source>
        <translation>Kopie der Tabelle %1</translation>
    </message>
    <message>
        <source>Copy Cell content?</source>
        <translation>Zelleninhalt kopieren?</translation>
    </message>
    <message>
        <source>Records for %1</source>
        <translation>Datensätze für %1</translation>
    </message>
    <message>
        <source>Copy of cells to %1</source>
        <translation>Kopie von Zellen nach %1</translation>
    </message>
</context>
<context>
    <name>CloseCommands</name>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>DifferenceWalk</name>
    <message>
        <source>&amp;Next Difference</source>
        <translation>&amp;Nächster Unterschied</translation>
    </message>
    <message>
        <source>&amp;Previous Difference</source>
        <translation>V&amp;orheriger Unterschied</translation>
    </message>
    <message>
        <source>&amp;First Difference</source>
        <translation>E&amp;rster Unterschied</translation>
    </message>
    <message>
        <source>&amp;Last Difference</source>
        <translation>&amp;Letzter Unterschied</translation>
    </message>
    <message>
        <source>Ne&amp;xt Differing Cell</source>
        <translation>Nächste verschie&amp;dene Zelle</translation>
    </message>
    <message>
        <source>Pre&amp;vious Differing Cell</source>
        <translation>Vorheri&amp;ge verschiedene Zelle</translation>
    </message>
    <message>
        <source>The two lists are not lined up: Mode &gt; Compare Again does that</source>
        <translation>Die beiden Listen sind nicht ausgerichtet: Modus &gt; Erneut vergleichen tut das</translation>
    </message>
    <message>
        <source>No further difference</source>
        <translation>Kein weiterer Unterschied</translation>
    </message>
    <message>
        <source>No earlier difference</source>
        <translation>Kein früherer Unterschied</translation>
    </message>
</context>
<context>
    <name>DifferenceWords</name>
    <message>
        <source>differs</source>
        <translation>verschieden</translation>
    </message>
    <message>
        <source>only here</source>
        <translation>nur hier</translation>
    </message>
    <message>
        <source>missing here</source>
        <translation>fehlt hier</translation>
    </message>
    <message>
        <source>left: %1, missing on the right</source>
        <translation>links: %1, fehlt rechts</translation>
    </message>
    <message>
        <source>missing on the left, right: %1</source>
        <translation>fehlt links, rechts: %1</translation>
    </message>
    <message>
        <source>left: %1, right: %2</source>
        <translation>links: %1, rechts: %2</translation>
    </message>
</context>
<context>
    <name>EditCommands</name>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Fill Do&amp;wn</source>
        <translation>Nach &amp;unten ausfüllen</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Fill Down</source>
        <translation>Nach unten ausfüllen</translation>
    </message>
</context>
<context>
    <name>FieldCommands</name>
    <message>
        <source>&amp;Add...</source>
        <translation>&amp;Hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Umbenennen...</translation>
    </message>
    <message>
        <source>Re&amp;move...</source>
        <translation>&amp;Entfernen...</translation>
    </message>
    <message>
        <source>Resi&amp;ze Text...</source>
        <translation>&amp;Textlänge ändern...</translation>
    </message>
    <message>
        <source>No selected Table</source>
        <translation>Keine Tabelle ausgewählt</translation>
    </message>
    <message>
        <source>New field name</source>
        <translation>Name des neuen Feldes</translation>
    </message>
    <message>
        <source>Field: &apos;%1&apos; already exists</source>
        <translation>Das Feld &apos;%1&apos; gibt es schon</translation>
    </message>
    <message>
        <source>Adding field %1</source>
        <translation>Feld %1 hinzufügen</translation>
    </message>
    <message>
        <source>New field size</source>
        <translation>Größe des neuen Feldes</translation>
    </message>
    <message>
        <source>Field &apos;%1&apos; was added to table &apos;%2&apos;.</source>
        <translation>Das Feld &apos;%1&apos; wurde der Tabelle &apos;%2&apos; hinzugefügt.</translation>
    </message>
    <message>
        <source>Tipi</source>
        <translation>Typen</translation>
    </message>
    <message>
        <source>Field&apos;s new name (%1)</source>
        <translation>Neuer Name des Feldes (%1)</translation>
    </message>
    <message>
        <source>Renaming field %1</source>
        <translation>Feld %1 umbenennen</translation>
    </message>
    <message>
        <source>Do you want to remove field: &apos;%1&apos; ?</source>
        <translation>Soll das Feld &apos;%1&apos; entfernt werden?</translation>
    </message>
    <message>
        <source>Removing field %1</source>
        <translation>Feld %1 entfernen</translation>
    </message>
    <message>
        <source>Field size</source>
        <translation>Größe des Feldes</translation>
    </message>
    <message>
        <source>Resizing field %1</source>
        <translation>Größe des Feldes %1 ändern</translation>
    </message>
</context>
<context>
    <name>GoToCommand</name>
    <message>
        <source>&amp;Go To...</source>
        <translation>&amp;Gehe zu...</translation>
    </message>
    <message>
        <source>Record, field, or record, field</source>
        <translation>Datensatz, Feld oder Datensatz, Feld</translation>
    </message>
    <message>
        <source>There is no &apos;%1&apos; in this table of %2 records</source>
        <translation>&apos;%1&apos; gibt es nicht in dieser Tabelle von %2 Datensätzen</translation>
    </message>
</context>
<context>
    <name>KeptVersions</name>
    <message>
        <source>Kept &amp;Versions...</source>
        <translation>Aufbewahrte &amp;Versionen...</translation>
    </message>
    <message>
        <source>Do you want to remove &apos;%1&apos; for good ?</source>
        <translation>Soll &apos;%1&apos; endgültig entfernt werden?</translation>
    </message>
    <message>
        <source>&apos;%1&apos; could not be removed</source>
        <translation>&apos;%1&apos; konnte nicht entfernt werden</translation>
    </message>
</context>
<context>
    <name>KeyedCarry</name>
    <message>
        <source>&apos;%1&apos; in record %2, field &apos;%3&apos;</source>
        <translation>&apos;%1&apos; in Datensatz %2, Feld &apos;%3&apos;</translation>
    </message>
    <message>
        <source>Make these changes on the left?</source>
        <translation>Diese Änderungen links vornehmen?</translation>
    </message>
    <message>
        <source>Make these changes on the right?</source>
        <translation>Diese Änderungen rechts vornehmen?</translation>
    </message>
    <message>
        <source>Values changed: %1, records added: %2, removed: %3.</source>
        <translation>Werte geändert: %1, Datensätze hinzugefügt: %2, entfernt: %3.</translation>
    </message>
    <message>
        <source>and %1 more.</source>
        <translation>und %1 weitere.</translation>
    </message>
    <message>
        <source>One value would not stay what it is: %1.</source>
        <translation>Ein Wert bliebe nicht, was er ist: %1.</translation>
    </message>
    <message>
        <source>%1 values would not stay what they are, the first is %2.</source>
        <translation>%1 Werte blieben nicht, was sie sind, der erste ist %2.</translation>
    </message>
    <message>
        <source>Carry these values too? With No they are left out.</source>
        <translation>Auch diese Werte übertragen? Mit Nein werden sie ausgelassen.</translation>
    </message>
    <message>
        <source>Values changed: %1, records added: %2, removed: %3</source>
        <translation>Werte geändert: %1, Datensätze hinzugefügt: %2, entfernt: %3</translation>
    </message>
    <message>
        <source>Changes by key carried to %1</source>
        <translation>Änderungen nach Schlüssel nach %1 übertragen</translation>
    </message>
    <message>
        <source>The added records go without these fields, which the other side lacks: %1.</source>
        <translation>Die hinzugefügten Datensätze sind ohne diese Felder, die der anderen Seite fehlen: %1.</translation>
    </message>
</context>
<context>
    <name>ModeCommands</name>
    <message>
        <source>&amp;One Database</source>
        <translation>&amp;Eine Datenbank</translation>
    </message>
    <message>
        <source>&amp;Two Databases</source>
        <translation>&amp;Zwei Datenbanken</translation>
    </message>
    <message>
        <source>Compare &amp;Again</source>
        <translation>Erneut &amp;vergleichen</translation>
    </message>
    <message>
        <source>Other &amp;Pane</source>
        <translation>&amp;Andere Seite</translation>
    </message>
</context>
<context>
    <name>OnlyDifferences</name>
    <message>
        <source>Not while only differences are shown: turn off Mode &gt; Only Differences first</source>
        <translation>Nicht, solange nur Unterschiede gezeigt werden: erst Modus &gt; Nur Unterschiede ausschalten</translation>
    </message>
</context>
<context>
    <name>OpenCommand</name>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was not found</source>
        <translation>&apos;%1&apos; wurde nicht gefunden</translation>
    </message>
    <message>
        <source>Database &apos;%1&apos; has changes that are not saved.<byte value="xd"/>
Reload it and drop them?</source>
        <translation>Die Datenbank &apos;%1&apos; hat nicht gespeicherte Änderungen.<byte value="xd"/>
Neu laden und sie verwerfen?</translation>
    </message>
    <message>
        <source>Can&apos;t load &apos;%1&apos;</source>
        <translation>&apos;%1&apos; kann nicht geladen werden</translation>
    </message>
    <message>
        <source>File DDB,WDB,UDB,SDB,IDB</source>
        <translation>Datei DDB,WDB,UDB,SDB,IDB</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Kennwort:</translation>
    </message>
    <message>
        <source>Input password</source>
        <translation>Kennwort eingeben</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was not found.<byte value="xd"/>
Take it off the recent files?</source>
        <translation>&apos;%1&apos; wurde nicht gefunden.<byte value="xd"/>
Aus den zuletzt geöffneten Dateien streichen?</translation>
    </message>
    <message>
        <source>Database &apos;%1&apos; has changes that are not saved.<byte value="xd"/>
Save them before another file takes its place?</source>
        <translation>Die Datenbank &apos;%1&apos; hat nicht gespeicherte Änderungen.<byte value="xd"/>
Speichern, bevor eine andere Datei ihren Platz einnimmt?</translation>
    </message>
    <message>
        <source>This side has nothing: &apos;%1&apos; is empty.</source>
        <translation>Auf dieser Seite ist nichts: &apos;%1&apos; ist leer.</translation>
    </message>
</context>
<context>
    <name>PasteAll</name>
    <message>
        <source>Paste A&amp;ll</source>
        <translation>Alles ein&amp;fügen</translation>
    </message>
    <message>
        <source>The block needs 1 record more. Add it?</source>
        <translation>Der Block braucht 1 Datensatz mehr. Hinzufügen?</translation>
    </message>
    <message>
        <source>The block needs %1 records more. Add them?</source>
        <translation>Der Block braucht %1 Datensätze mehr. Hinzufügen?</translation>
    </message>
    <message>
        <source>Paste All</source>
        <translation>Alles einfügen</translation>
    </message>
    <message>
        <source>Of the pasted values %1</source>
        <translation>Von den eingefügten Werten %1</translation>
    </message>
    <message>
        <source>1 pasted value had no place in the table (%1)</source>
        <translation>1 eingefügter Wert hatte in der Tabelle keinen Platz (%1)</translation>
    </message>
    <message>
        <source>%1 pasted values had no place in the table (first: %2)</source>
        <translation>%1 eingefügte Werte hatten in der Tabelle keinen Platz (der erste: %2)</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Left pane</source>
        <translation>Linke Seite</translation>
    </message>
    <message>
        <source>Right pane</source>
        <translation>Rechte Seite</translation>
    </message>
    <message>
        <source>Left file name</source>
        <translation>Linker Dateiname</translation>
    </message>
    <message>
        <source>Right file name</source>
        <translation>Rechter Dateiname</translation>
    </message>
    <message>
        <source>Filter of left tables</source>
        <translation>Filter der linken Tabellen</translation>
    </message>
    <message>
        <source>Filter of right tables</source>
        <translation>Filter der rechten Tabellen</translation>
    </message>
    <message>
        <source>Tables whose name holds...</source>
        <translation>Tabellen, deren Name enthält...</translation>
    </message>
    <message>
        <source>Left tables</source>
        <translation>Linke Tabellen</translation>
    </message>
    <message>
        <source>Right tables</source>
        <translation>Rechte Tabellen</translation>
    </message>
    <message>
        <source>Left table</source>
        <translation>Linke Tabelle</translation>
    </message>
    <message>
        <source>Right table</source>
        <translation>Rechte Tabelle</translation>
    </message>
    <message>
        <source>Left cell editor</source>
        <translation>Linke Zellenbearbeitung</translation>
    </message>
    <message>
        <source>Right cell editor</source>
        <translation>Rechte Zellenbearbeitung</translation>
    </message>
    <message>
        <source>Border below left tables</source>
        <translation>Grenze unter den linken Tabellen</translation>
    </message>
    <message>
        <source>Border below right tables</source>
        <translation>Grenze unter den rechten Tabellen</translation>
    </message>
    <message>
        <source>No database is open here.
Open one (Ctrl+O), or drop a file here.</source>
        <translation>Hier ist keine Datenbank geöffnet.
Öffnen Sie eine (Strg+O), oder legen Sie hier eine Datei ab.</translation>
    </message>
    <message>
        <source>Left pane: %1</source>
        <translation>Linke Seite: %1</translation>
    </message>
    <message>
        <source>Right pane: %1</source>
        <translation>Rechte Seite: %1</translation>
    </message>
    <message>
        <source>Progress of the comparison</source>
        <translation>Fortschritt des Vergleichs</translation>
    </message>
    <message>
        <source>None Yet</source>
        <translation>Noch keine</translation>
    </message>
    <message>
        <source>Can&apos;t assign new file name</source>
        <translation>Der neue Dateiname kann nicht vergeben werden</translation>
    </message>
    <message>
        <source>New Database</source>
        <translation>Neue Datenbank</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is open. Close it before making a new database of that name.</source>
        <translation>&apos;%1&apos; ist geöffnet. Schließen Sie es, bevor Sie eine neue Datenbank dieses Namens anlegen.</translation>
    </message>
    <message>
        <source>&amp;Keys</source>
        <translation>&amp;Tasten</translation>
    </message>
    <message>
        <source>A&amp;bout</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>Edits and compares small typed table databases.
MIT license.</source>
        <translation>Bearbeitet und vergleicht kleine Datenbanken aus typisierten Tabellen.
MIT-Lizenz.</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <source>User &amp;Guide</source>
        <translation>&amp;Benutzerhandbuch</translation>
    </message>
    <message>
        <source>The database to open in the left pane.</source>
        <translation>Die Datenbank, die links geöffnet wird.</translation>
    </message>
    <message>
        <source>The database to open beside it, in the right pane.</source>
        <translation>Die Datenbank, die daneben, rechts, geöffnet wird.</translation>
    </message>
    <message>
        <source>Show two panes, and ask for each file that is not named.</source>
        <translation>Zwei Bereiche zeigen und nach jeder Datei fragen, die nicht genannt ist.</translation>
    </message>
    <message>
        <source>--compare asks for files, and with --picture nobody is there to answer.</source>
        <translation>--compare fragt nach Dateien, und mit --picture ist niemand da, der antwortet.</translation>
    </message>
    <message>
        <source>The window&apos;s language: %1.</source>
        <translation>Die Sprache des Fensters: %1.</translation>
    </message>
    <message>
        <source>Load the file, write a picture of the window and end.</source>
        <translation>Lädt die Datei, schreibt ein Bild des Fensters und endet.</translation>
    </message>
    <message>
        <source>Edits and compares QIR databases.</source>
        <translation>Bearbeitet und vergleicht QIR-Datenbanken.</translation>
    </message>
    <message>
        <source>--language takes one of these: %1.</source>
        <translation>--language nimmt eine von diesen: %1.</translation>
    </message>
    <message>
        <source>The left pane takes one file: --left and &apos;%1&apos; are two.</source>
        <translation>Die linke Seite nimmt eine Datei: --left und &apos;%1&apos; sind zwei.</translation>
    </message>
    <message>
        <source>--%1 takes one file.</source>
        <translation>--%1 nimmt eine Datei.</translation>
    </message>
    <message>
        <source>qir-editor --help lists the options.</source>
        <translation>qir-editor --help nennt die Optionen.</translation>
    </message>
    <message>
        <source>no display to open the window on:</source>
        <translation>kein Bildschirm, um das Fenster zu öffnen:</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Mode</source>
        <translation>&amp;Modus</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Tables</source>
        <translation>&amp;Tabellen</translation>
    </message>
    <message>
        <source>Fie&amp;lds</source>
        <translation>&amp;Felder</translation>
    </message>
    <message>
        <source>&amp;Records</source>
        <translation>Daten&amp;sätze</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Colours</source>
        <translation>&amp;Farben</translation>
    </message>
    <message>
        <source>Change &amp;Password...</source>
        <translation>&amp;Kennwort ändern...</translation>
    </message>
    <message>
        <source>Current password:</source>
        <translation>Jetziges Kennwort:</translation>
    </message>
    <message>
        <source>New password:</source>
        <translation>Neues Kennwort:</translation>
    </message>
    <message>
        <source>%1: the picture cannot be written</source>
        <translation>%1: das Bild kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>The editor opens one file from its command line, and these are %1:
%2
File &gt; Open opens them one by one.</source>
        <translation>Der Editor öffnet von der Befehlszeile eine Datei, und dies sind %1:
%2
Datei &gt; Öffnen öffnet sie einzeln.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was not found</source>
        <translation>&apos;%1&apos; wurde nicht gefunden</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Repor&amp;t...</source>
        <translation>&amp;Bericht...</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Bericht</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>%1: it is an open database</source>
        <translation>%1: das ist eine geöffnete Datenbank</translation>
    </message>
    <message>
        <source>&apos;%1&apos; would replace &apos;%2&apos;, which is not the name chosen</source>
        <translation>&apos;%1&apos; würde &apos;%2&apos; ersetzen, das nicht der gewählte Name ist</translation>
    </message>
    <message>
        <source>QIR Database Editor</source>
        <translation>QIR Database Editor</translation>
    </message>
    <message>
        <source>Device Data Files(*.DDB)|*.DDB|Display Data Files(*.WDB)|*.WDB|User Data Files(*.UDB)|*.UDB|User Info Files(*.IDB)|*.IDB|Settings Data Files(*.SDB)|*.SDB</source>
        <translation>Gerätedaten(*.DDB)|*.DDB|Anzeigedaten(*.WDB)|*.WDB|Benutzerdaten(*.UDB)|*.UDB|Benutzerinformationen(*.IDB)|*.IDB|Einstellungsdaten(*.SDB)|*.SDB</translation>
    </message>
    <message>
        <source>Database &apos;%1&apos; has changed.<byte value="xd"/>
Do you want to save the changes?</source>
        <translation>Die Datenbank &apos;%1&apos; hat sich geändert.<byte value="xd"/>
Sollen die Änderungen gespeichert werden?</translation>
    </message>
    <message>
        <source>Checking the password of &apos;%1&apos;...</source>
        <translation>Das Kennwort von &apos;%1&apos; wird geprüft...</translation>
    </message>
    <message>
        <source>&apos;%1&apos; would reach &apos;%2&apos; instead of the chosen file</source>
        <translation>&apos;%1&apos; würde &apos;%2&apos; erreichen statt der gewählten Datei</translation>
    </message>
    <message>
        <source>Text of the cell</source>
        <translation>Text der Zelle</translation>
    </message>
    <message>
        <source>The selected table could not be loaded.</source>
        <translation>Die ausgewählte Tabelle konnte nicht geladen werden.</translation>
    </message>
    <message>
        <source>Table &apos;%1&apos; is not loaded whole: %2</source>
        <translation>Tabelle &apos;%1&apos; ist nicht ganz geladen: %2</translation>
    </message>
    <message>
        <source>Edit of %1.%2</source>
        <translation>Bearbeitung von %1.%2</translation>
    </message>
    <message>
        <source>&amp;Fit Columns</source>
        <translation>Spalten an&amp;passen</translation>
    </message>
    <message>
        <source>Re&amp;move Record %1</source>
        <translation>Datensatz %1 &amp;entfernen</translation>
    </message>
    <message>
        <source>Re&amp;move Record</source>
        <translation>Datensatz &amp;entfernen</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Cells</source>
        <translation>Zellen</translation>
    </message>
    <message>
        <source>Menus</source>
        <translation>Menüs</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>&amp;Handbuch</translation>
    </message>
    <message>
        <source>Qt %1. Help &gt; Guide (F1) opens the guide.</source>
        <translation>Qt %1. Hilfe &gt; Handbuch (F1) öffnet das Handbuch.</translation>
    </message>
</context>
<context>
    <name>RecordCommands</name>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Re&amp;move Record</source>
        <translation>Datensatz &amp;entfernen</translation>
    </message>
    <message>
        <source>Adding a record to %1</source>
        <translation>Datensatz zu %1 hinzufügen</translation>
    </message>
    <message>
        <source>No selected Record</source>
        <translation>Kein Datensatz ausgewählt</translation>
    </message>
    <message>
        <source>Removing record %1 of %2</source>
        <translation>Datensatz %1 von %2 entfernen</translation>
    </message>
</context>
<context>
    <name>Replacement</name>
    <message>
        <source>%1, record %2, %3: &quot;%4&quot; is stored as &quot;%5&quot;</source>
        <translation>%1, Datensatz %2, %3: &quot;%4&quot; ist als &quot;%5&quot; gespeichert</translation>
    </message>
    <message>
        <source>%1 of %2 values would not be stored as they are written:</source>
        <translation>%1 von %2 Werten würden nicht gespeichert, wie sie geschrieben sind:</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>Replace all the same?</source>
        <translation>Trotzdem ersetzen?</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Nothing was replaced</source>
        <translation>Nichts wurde ersetzt</translation>
    </message>
    <message>
        <source>1 cell was replaced</source>
        <translation>1 Zelle wurde ersetzt</translation>
    </message>
    <message>
        <source>%1 cells were replaced</source>
        <translation>%1 Zellen wurden ersetzt</translation>
    </message>
    <message>
        <source>1 of %1 values would not be stored as it is written:</source>
        <translation>1 von %1 Werten würde nicht gespeichert, wie er geschrieben ist:</translation>
    </message>
</context>
<context>
    <name>SaveCommands</name>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>File DDB,WDB,UDB,SDB,IDB</source>
        <translation>Datei DDB,WDB,UDB,SDB,IDB</translation>
    </message>
    <message>
        <source>Nothing was saved: it is the other pane that has changed. F6, then Ctrl+S.</source>
        <translation>Es wurde nichts gespeichert: Geändert ist die andere Seite. F6, dann Strg+S.</translation>
    </message>
</context>
<context>
    <name>Sorting</name>
    <message>
        <source>&amp;Sort by This Field</source>
        <translation>Nach diesem Feld &amp;sortieren</translation>
    </message>
    <message>
        <source>Sort by %1</source>
        <translation>Nach %1 sortieren</translation>
    </message>
</context>
<context>
    <name>StatusState</name>
    <message>
        <source>missing here</source>
        <translation>fehlt hier</translation>
    </message>
    <message>
        <source>record %1 of %2</source>
        <translation>Datensatz %1 von %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>1 table differs</source>
        <translation>1 Tabelle verschieden</translation>
    </message>
    <message>
        <source>%1 tables differ</source>
        <translation>%1 Tabellen verschieden</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>%1 and %2 records</source>
        <translation>%1 und %2 Datensätze</translation>
    </message>
    <message>
        <source>1 cell here</source>
        <translation>1 Zelle hier</translation>
    </message>
    <message>
        <source>%1 cells here</source>
        <translation>%1 Zellen hier</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>no differences to show</source>
        <translation>keine Unterschiede zu zeigen</translation>
    </message>
    <message>
        <source>%1 shown</source>
        <translation>%1 gezeigt</translation>
    </message>
    <message>
        <source>0 or 1</source>
        <translation>0 oder 1</translation>
    </message>
    <message>
        <source>%1 of %2 characters</source>
        <translation>%1 von %2 Zeichen</translation>
    </message>
</context>
<context>
    <name>Storage</name>
    <message>
        <source>the disk is full</source>
        <translation>der Datenträger ist voll</translation>
    </message>
    <message>
        <source>the disk quota is used up</source>
        <translation>der zugeteilte Platz ist verbraucht</translation>
    </message>
    <message>
        <source>the disk is read-only</source>
        <translation>der Datenträger ist schreibgeschützt</translation>
    </message>
    <message>
        <source>no permission</source>
        <translation>keine Berechtigung</translation>
    </message>
    <message>
        <source>no such file or folder</source>
        <translation>es gibt keine solche Datei und keinen solchen Ordner</translation>
    </message>
    <message>
        <source>a part of the path is not a folder</source>
        <translation>ein Teil des Pfades ist kein Ordner</translation>
    </message>
    <message>
        <source>it is a folder</source>
        <translation>es ist ein Ordner</translation>
    </message>
    <message>
        <source>the name is already taken</source>
        <translation>den Namen gibt es schon</translation>
    </message>
    <message>
        <source>the disk reported an error</source>
        <translation>der Datenträger meldet einen Fehler</translation>
    </message>
    <message>
        <source>the file would be larger than the disk or a limit of the system allows</source>
        <translation>die Datei wäre größer, als der Datenträger oder eine Grenze des Systems erlaubt</translation>
    </message>
    <message>
        <source>the name is too long</source>
        <translation>der Name ist zu lang</translation>
    </message>
    <message>
        <source>too many links lead to one another</source>
        <translation>zu viele Verweise führen aufeinander</translation>
    </message>
    <message>
        <source>too many files are open</source>
        <translation>zu viele Dateien sind geöffnet</translation>
    </message>
    <message>
        <source>there is not enough memory</source>
        <translation>der Speicher reicht nicht</translation>
    </message>
    <message>
        <source>the call was interrupted again and again</source>
        <translation>der Aufruf wurde immer wieder unterbrochen</translation>
    </message>
    <message>
        <source>it is in use</source>
        <translation>sie wird gerade benutzt</translation>
    </message>
    <message>
        <source>it is gone from the server</source>
        <translation>sie ist nicht mehr auf dem Server</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>Der Speicher reicht nicht.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; and &apos;%2&apos; in &apos;%3&apos; differ only in case</source>
        <translation>&apos;%1&apos; und &apos;%2&apos; in &apos;%3&apos; unterscheiden sich nur in Groß- und Kleinschreibung</translation>
    </message>
    <message>
        <source>&apos;%1&apos; holds a character that no file name can hold</source>
        <translation>&apos;%1&apos; enthält ein Zeichen, das kein Dateiname enthalten kann</translation>
    </message>
    <message>
        <source>the argument &quot;%1&quot; is not UTF-8: such a name cannot be told from another one</source>
        <translation>das Argument &quot;%1&quot; ist kein UTF-8: ein solcher Name ist von einem anderen nicht zu unterscheiden</translation>
    </message>
    <message>
        <source>it belongs to another user</source>
        <translation>gehört einem anderen Benutzer</translation>
    </message>
    <message>
        <source>other users may change it (its permissions must be private to you)</source>
        <translation>andere Benutzer dürfen es ändern (nur Sie dürfen Rechte daran haben)</translation>
    </message>
    <message>
        <source>it is empty</source>
        <translation>sie ist leer</translation>
    </message>
    <message>
        <source>it is a device, not a file</source>
        <translation>es ist ein Gerät, keine Datei</translation>
    </message>
    <message>
        <source>it cannot be opened: %1</source>
        <translation>sie kann nicht geöffnet werden: %1</translation>
    </message>
    <message>
        <source>it cannot be read: %1</source>
        <translation>sie kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>it ends after %1 of %2 bytes</source>
        <translation>sie endet nach %1 von %2 Bytes</translation>
    </message>
    <message>
        <source>it ends after %1 bytes</source>
        <translation>sie endet nach %1 Bytes</translation>
    </message>
    <message>
        <source>it is damaged: %1 bytes follow its end</source>
        <translation>sie ist beschädigt: %1 Bytes folgen auf ihr Ende</translation>
    </message>
    <message>
        <source>it is damaged: part %1 of %2 does not match its checksum</source>
        <translation>sie ist beschädigt: Teil %1 von %2 stimmt nicht mit seiner Prüfsumme überein</translation>
    </message>
    <message>
        <source>it is damaged: %1</source>
        <translation>sie ist beschädigt: %1</translation>
    </message>
    <message>
        <source>it is damaged</source>
        <translation>sie ist beschädigt</translation>
    </message>
    <message>
        <source>its content is larger than is accepted (%1 bytes)</source>
        <translation>ihr Inhalt ist größer, als angenommen wird (%1 Bytes)</translation>
    </message>
    <message>
        <source>it is protected and needs a password</source>
        <translation>sie ist geschützt und braucht ein Kennwort</translation>
    </message>
    <message>
        <source>the password does not open it</source>
        <translation>das Kennwort öffnet sie nicht</translation>
    </message>
    <message>
        <source>its header is not the one that was written</source>
        <translation>ihr Kopf ist nicht der, der geschrieben wurde</translation>
    </message>
    <message>
        <source>there is not enough memory to turn the password into a key (%1 MiB are needed)</source>
        <translation>der Speicher reicht nicht, um aus dem Kennwort einen Schlüssel zu machen (%1 MiB werden gebraucht)</translation>
    </message>
    <message>
        <source>there is not enough memory to turn the password into a key</source>
        <translation>der Speicher reicht nicht, um aus dem Kennwort einen Schlüssel zu machen</translation>
    </message>
    <message>
        <source>it is not a database of this program</source>
        <translation>sie ist keine Datenbank dieses Programms</translation>
    </message>
    <message>
        <source>it was made by a newer version of this program (%1)</source>
        <translation>sie stammt von einer neueren Version dieses Programms (%1)</translation>
    </message>
    <message>
        <source>it was made by a newer version of this program</source>
        <translation>sie stammt von einer neueren Version dieses Programms</translation>
    </message>
    <message>
        <source>its header does not match its checksum</source>
        <translation>ihr Kopf stimmt nicht mit seiner Prüfsumme überein</translation>
    </message>
    <message>
        <source>format %1.%2</source>
        <translation>Format %1.%2</translation>
    </message>
    <message>
        <source>there is no format 0</source>
        <translation>es gibt kein Format 0</translation>
    </message>
    <message>
        <source>it needs a feature that this version does not have</source>
        <translation>sie braucht etwas, das diese Version nicht kann</translation>
    </message>
    <message>
        <source>it uses header bytes that this version does not know</source>
        <translation>sie benutzt Bytes des Kopfes, die diese Version nicht kennt</translation>
    </message>
    <message>
        <source>its parts have a size that is not accepted</source>
        <translation>ihre Teile haben eine Größe, die nicht angenommen wird</translation>
    </message>
    <message>
        <source>it is sealed in a way that this version does not know</source>
        <translation>sie ist auf eine Weise versiegelt, die diese Version nicht kennt</translation>
    </message>
    <message>
        <source>it says both that it is protected and that it is open</source>
        <translation>sie nennt sich geschützt und offen zugleich</translation>
    </message>
    <message>
        <source>it is open but has a password&apos;s traces</source>
        <translation>sie ist offen und trägt doch Spuren eines Kennworts</translation>
    </message>
    <message>
        <source>it has no identity</source>
        <translation>sie hat keine Kennung</translation>
    </message>
    <message>
        <source>its header&apos;s extensions have no end</source>
        <translation>die Erweiterungen ihres Kopfes haben kein Ende</translation>
    </message>
    <message>
        <source>trying a password on it would take more time or memory than is accepted (%1 passes over %2 KiB)</source>
        <translation>ein Kennwort daran zu versuchen würde mehr Zeit oder Speicher kosten, als angenommen wird (%1 Durchgänge über %2 KiB)</translation>
    </message>
    <message>
        <source>its tables take more memory than is allowed</source>
        <translation>ihre Tabellen brauchen mehr Speicher, als erlaubt ist</translation>
    </message>
    <message>
        <source>a length in it reaches beyond its end</source>
        <translation>eine Länge darin reicht über ihr Ende hinaus</translation>
    </message>
    <message>
        <source>bytes that must be zero are not</source>
        <translation>Bytes, die null sein müssen, sind es nicht</translation>
    </message>
    <message>
        <source>a table has more than %1 records</source>
        <translation>eine Tabelle hat mehr als %1 Datensätze</translation>
    </message>
    <message>
        <source>a table has more than %1 fields</source>
        <translation>eine Tabelle hat mehr als %1 Felder</translation>
    </message>
    <message>
        <source>a table without fields has records</source>
        <translation>eine Tabelle ohne Felder hat Datensätze</translation>
    </message>
    <message>
        <source>a field has an unknown type</source>
        <translation>ein Feld hat einen unbekannten Typ</translation>
    </message>
    <message>
        <source>a field that is no text has a size</source>
        <translation>ein Feld, das kein Text ist, hat eine Größe</translation>
    </message>
    <message>
        <source>two fields of the table &quot;%1&quot; have the same name &quot;%2&quot;</source>
        <translation>zwei Felder der Tabelle &quot;%1&quot; heißen &quot;%2&quot;</translation>
    </message>
    <message>
        <source>a table has bytes left over</source>
        <translation>von einer Tabelle sind Bytes übrig</translation>
    </message>
    <message>
        <source>a name is not in UTF-8</source>
        <translation>ein Name ist nicht in UTF-8</translation>
    </message>
    <message>
        <source>a name is longer than %1 characters</source>
        <translation>ein Name ist länger als %1 Zeichen</translation>
    </message>
    <message>
        <source>a name is empty</source>
        <translation>ein Name ist leer</translation>
    </message>
    <message>
        <source>a section has flags that its type does not have</source>
        <translation>ein Abschnitt hat Merkmale, die seine Art nicht hat</translation>
    </message>
    <message>
        <source>there are bytes after its end</source>
        <translation>es stehen Bytes hinter ihrem Ende</translation>
    </message>
    <message>
        <source>a table stands after other sections</source>
        <translation>eine Tabelle steht hinter anderen Abschnitten</translation>
    </message>
    <message>
        <source>it has more than %1 tables</source>
        <translation>sie hat mehr als %1 Tabellen</translation>
    </message>
    <message>
        <source>two tables have the same name &quot;%1&quot;</source>
        <translation>zwei Tabellen heißen &quot;%1&quot;</translation>
    </message>
    <message>
        <source>a bool is neither 0 nor 1</source>
        <translation>ein Wahrheitswert ist weder 0 noch 1</translation>
    </message>
    <message>
        <source>a number is not finite</source>
        <translation>eine Zahl ist nicht endlich</translation>
    </message>
    <message>
        <source>a text is longer than its field</source>
        <translation>ein Text ist länger als sein Feld</translation>
    </message>
    <message>
        <source>a text is not in UTF-8</source>
        <translation>ein Text ist nicht in UTF-8</translation>
    </message>
    <message>
        <source>no file name was given</source>
        <translation>es wurde kein Dateiname genannt</translation>
    </message>
    <message>
        <source>the database has not been saved yet</source>
        <translation>die Datenbank wurde noch nicht gespeichert</translation>
    </message>
    <message>
        <source>%1: another program has changed it since</source>
        <translation>%1: ein anderes Programm hat sie seither geändert</translation>
    </message>
    <message>
        <source>%1: there is not enough memory to load it</source>
        <translation>%1: der Speicher reicht nicht, um sie zu laden</translation>
    </message>
    <message>
        <source>This file asks for more than usual: trying a password takes %1%2 MiB of memory.</source>
        <translation>Diese Datei verlangt mehr als üblich: ein Kennwort zu versuchen braucht %1%2 MiB Speicher.</translation>
    </message>
    <message>
        <source>about %1 times as long, and </source>
        <translation>etwa %1-mal so lange und </translation>
    </message>
    <message>
        <source>%1: could not be saved: %2</source>
        <translation>%1: konnte nicht gespeichert werden: %2</translation>
    </message>
    <message>
        <source>%1: was changed %2 since it was opened; use Save As</source>
        <translation>%1: wurde seit dem Öffnen %2 geändert; Speichern unter verwenden</translation>
    </message>
    <message>
        <source>in the other pane</source>
        <translation>auf der anderen Seite</translation>
    </message>
    <message>
        <source>by another program</source>
        <translation>von einem anderen Programm</translation>
    </message>
    <message>
        <source>its folder is gone</source>
        <translation>ihr Ordner ist nicht mehr da</translation>
    </message>
    <message>
        <source>it is marked read-only; use Save As</source>
        <translation>sie ist schreibgeschützt; Speichern unter verwenden</translation>
    </message>
    <message>
        <source>its name now belongs to something that is not a file</source>
        <translation>ihr Name gehört jetzt zu etwas, das keine Datei ist</translation>
    </message>
    <message>
        <source>it cannot be read any more: %1</source>
        <translation>sie kann nicht mehr gelesen werden: %1</translation>
    </message>
    <message>
        <source>another program is saving it just now; try again</source>
        <translation>ein anderes Programm speichert sie gerade; noch einmal versuchen</translation>
    </message>
    <message>
        <source>what was written does not read back: %1</source>
        <translation>was geschrieben wurde, ist nicht wieder zu lesen: %1</translation>
    </message>
    <message>
        <source>another program has just made a file of this name; use Save As</source>
        <translation>ein anderes Programm hat soeben eine Datei dieses Namens angelegt; Speichern unter verwenden</translation>
    </message>
    <message>
        <source>%1: was saved, but a power failure now might bring the old version back: %2</source>
        <translation>%1: wurde gespeichert, aber ein Stromausfall könnte jetzt die alte Version zurückbringen: %2</translation>
    </message>
    <message>
        <source>%1 (it stays as &apos;%2&apos;)</source>
        <translation>%1 (sie bleibt als &apos;%2&apos;)</translation>
    </message>
    <message>
        <source>what stood there could not be looked at again; it</source>
        <translation>was dort stand, konnte nicht noch einmal angesehen werden; es</translation>
    </message>
    <message>
        <source>another program had saved it meanwhile, and its version</source>
        <translation>ein anderes Programm hatte sie inzwischen gespeichert, und dessen Version</translation>
    </message>
    <message>
        <source>the version that stood there</source>
        <translation>die Version, die dort stand,</translation>
    </message>
    <message>
        <source>%1: was saved, but its previous version could not be removed and stays as &apos;%2&apos;: %3</source>
        <translation>%1: wurde gespeichert, aber die vorige Version konnte nicht entfernt werden und bleibt als &apos;%2&apos;: %3</translation>
    </message>
    <message>
        <source>%1: the version that stood there is kept as &apos;%2&apos;</source>
        <translation>%1: die Version, die dort stand, wird als &apos;%2&apos; aufbewahrt</translation>
    </message>
    <message>
        <source>%1: %2 is kept as &apos;%3&apos;</source>
        <translation>%1: %2 wird als &apos;%3&apos; aufbewahrt</translation>
    </message>
    <message>
        <source>%1: a version that an interrupted save had left behind is kept as &apos;%2&apos;</source>
        <translation>%1: eine Version, die ein abgebrochenes Speichern zurückgelassen hatte, wird als &apos;%2&apos; aufbewahrt</translation>
    </message>
    <message>
        <source>an earlier save of it had been cut short, and it could not be made whole first: %1</source>
        <translation>ein früheres Speichern war abgebrochen worden, und sie konnte nicht zuerst wiederhergestellt werden: %1</translation>
    </message>
    <message>
        <source>no safe copy of it could be made in &apos;%1&apos; first: %2</source>
        <translation>es konnte nicht zuerst eine sichere Kopie in &apos;%1&apos; angelegt werden: %2</translation>
    </message>
    <message>
        <source>%1; it is incomplete now, and becomes what it was before when it is next saved or opened</source>
        <translation>%1; sie ist jetzt unvollständig und wird wieder, was sie war, wenn sie das nächste Mal gespeichert oder geöffnet wird</translation>
    </message>
    <message>
        <source>%1; whether the old or the new version stands there now could not be found out</source>
        <translation>%1; ob dort jetzt die alte oder die neue Version steht, war nicht herauszufinden</translation>
    </message>
    <message>
        <source>the version that stands there could not be kept: %1</source>
        <translation>die Version, die dort steht, konnte nicht aufbewahrt werden: %1</translation>
    </message>
    <message>
        <source>%1

The changes could not be kept in &apos;%2&apos; either: %3</source>
        <translation>%1

Die Änderungen konnten auch in &apos;%2&apos; nicht aufbewahrt werden: %3</translation>
    </message>
    <message>
        <source>%1

The changes are kept in &apos;%2&apos;.</source>
        <translation>%1

Die Änderungen werden in &apos;%2&apos; aufbewahrt.</translation>
    </message>
    <message>
        <source>the current password is wrong</source>
        <translation>das jetzige Kennwort ist falsch</translation>
    </message>
    <message>
        <source>no database is loaded</source>
        <translation>es ist keine Datenbank geladen</translation>
    </message>
    <message>
        <source>%1; the safe copy &apos;%2&apos; of a save that was cut short may not be read</source>
        <translation>%1; die sichere Kopie &apos;%2&apos; eines abgebrochenen Speicherns darf nicht gelesen werden</translation>
    </message>
    <message>
        <source>the safe copy &apos;%1&apos; of a save that was cut short may not be read</source>
        <translation>die sichere Kopie &apos;%1&apos; eines abgebrochenen Speicherns darf nicht gelesen werden</translation>
    </message>
    <message>
        <source>it is not the file that was being saved, but a copy of it</source>
        <translation>sie ist nicht die Datei, die gespeichert wurde, sondern eine Kopie davon</translation>
    </message>
    <message>
        <source>a save of the file that stood here before had been cut short; it is &apos;%1&apos; now and becomes whole when it is opened</source>
        <translation>ein Speichern der Datei, die zuvor hier stand, war abgebrochen worden; sie heißt jetzt &apos;%1&apos; und wird wieder ganz, wenn sie geöffnet wird</translation>
    </message>
    <message>
        <source>a save of it had been cut short; it is again what it was before that save</source>
        <translation>ein Speichern war abgebrochen worden; sie ist wieder, was sie vor diesem Speichern war</translation>
    </message>
    <message>
        <source>a save of it had been cut short, and it could not be made whole: %1; what it was before that save is shown</source>
        <translation>ein Speichern war abgebrochen worden, und sie konnte nicht wiederhergestellt werden: %1; gezeigt wird, was sie vor diesem Speichern war</translation>
    </message>
    <message>
        <source>a save of it had been cut short, and something else was put in its place since</source>
        <translation>ein Speichern war abgebrochen worden, und seither wurde etwas anderes an ihre Stelle gesetzt</translation>
    </message>
    <message>
        <source>%1; what it was before that save and what was to be saved are still in &apos;%2&apos;</source>
        <translation>%1; was sie vor diesem Speichern war und was gespeichert werden sollte, steht noch in &apos;%2&apos;</translation>
    </message>
    <message>
        <source>%1; what it was before that save and what was to be saved are still in &apos;%2&apos;, but could not be kept in &apos;%3&apos;: %4</source>
        <translation>%1; was sie vor diesem Speichern war und was gespeichert werden sollte, steht noch in &apos;%2&apos;, konnte aber nicht in &apos;%3&apos; aufbewahrt werden: %4</translation>
    </message>
    <message>
        <source>%1; what it was before that save is kept in &apos;%2&apos;, what was to be saved in &apos;%3&apos;</source>
        <translation>%1; was sie vor diesem Speichern war, wird in &apos;%2&apos; aufbewahrt, was gespeichert werden sollte, in &apos;%3&apos;</translation>
    </message>
    <message>
        <source>there may be unsaved changes to it, but %1</source>
        <translation>es kann nicht gespeicherte Änderungen daran geben, aber %1</translation>
    </message>
    <message>
        <source>there are unsaved changes in &apos;%1&apos; that this password does not open: those of another protected file, or of this one under another password; they are kept, and shown when that is opened</source>
        <translation>in &apos;%1&apos; gibt es nicht gespeicherte Änderungen, die dieses Kennwort nicht öffnet: die einer anderen geschützten Datei oder dieser unter einem anderen Kennwort; sie werden aufbewahrt und gezeigt, wenn jene geöffnet wird</translation>
    </message>
    <message>
        <source>there may be unsaved changes in &apos;%1&apos;, but they are not taken up: %2</source>
        <translation>in &apos;%1&apos; kann es nicht gespeicherte Änderungen geben, sie werden aber nicht übernommen: %2</translation>
    </message>
    <message>
        <source>unsaved changes in &apos;%1&apos; cannot be read: it is damaged</source>
        <translation>nicht gespeicherte Änderungen in &apos;%1&apos; sind nicht zu lesen: es ist beschädigt</translation>
    </message>
    <message>
        <source>there are unsaved changes in &apos;%1&apos; that were not sealed with its password; they are kept there, and not taken up</source>
        <translation>in &apos;%1&apos; gibt es nicht gespeicherte Änderungen, die nicht mit ihrem Kennwort versiegelt waren; sie bleiben dort und werden nicht übernommen</translation>
    </message>
    <message>
        <source>there are unsaved changes to &apos;%1&apos;, of which this is a copy; they are shown when that one is opened</source>
        <translation>es gibt nicht gespeicherte Änderungen an &apos;%1&apos;, wovon dies eine Kopie ist; sie werden gezeigt, wenn jene Datei geöffnet wird</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be read: %2</source>
        <translation>&apos;%1&apos; kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>there are unsaved changes to another database that stood here before; they are kept in &apos;%1&apos;, and shown when that one is opened</source>
        <translation>es gibt nicht gespeicherte Änderungen an einer anderen Datenbank, die zuvor hier stand; sie werden in &apos;%1&apos; aufbewahrt und gezeigt, wenn jene geöffnet wird</translation>
    </message>
    <message>
        <source>there are unsaved changes that were sealed with another password; they are kept for when it is opened with that one</source>
        <translation>es gibt nicht gespeicherte Änderungen, die mit einem anderen Kennwort versiegelt wurden; sie werden aufbewahrt, bis sie mit diesem geöffnet wird</translation>
    </message>
    <message>
        <source>there are unsaved changes, but they cannot be read now: %1</source>
        <translation>es gibt nicht gespeicherte Änderungen, sie sind aber jetzt nicht zu lesen: %1</translation>
    </message>
    <message>
        <source>the journal of these changes is damaged: those that were made last are missing</source>
        <translation>das Journal dieser Änderungen ist beschädigt: die zuletzt gemachten fehlen</translation>
    </message>
    <message>
        <source>%1; all that is left of it is kept in &apos;%2&apos; for seven days</source>
        <translation>%1; alles, was davon übrig ist, wird sieben Tage lang in &apos;%2&apos; aufbewahrt</translation>
    </message>
    <message>
        <source>changes that were not saved when the program ended could not be made again; they are kept in &apos;%1&apos; for seven days</source>
        <translation>Änderungen, die beim Ende des Programms nicht gespeichert waren, konnten nicht wiederholt werden; sie werden sieben Tage lang in &apos;%1&apos; aufbewahrt</translation>
    </message>
    <message>
        <source>changes that were not saved when the program ended are there again; they are still unsaved</source>
        <translation>Änderungen, die beim Ende des Programms nicht gespeichert waren, sind wieder da; gespeichert sind sie noch nicht</translation>
    </message>
    <message>
        <source>there are unsaved changes to an earlier version of it, which cannot be made in this one; they are kept in &apos;%1&apos; for seven days</source>
        <translation>es gibt nicht gespeicherte Änderungen an einer früheren Version, die in dieser nicht gemacht werden können; sie werden sieben Tage lang in &apos;%1&apos; aufbewahrt</translation>
    </message>
    <message>
        <source>there are unsaved changes of another session in &apos;%1&apos;, which cannot be kept as a file of their own now: %2</source>
        <translation>in &apos;%1&apos; gibt es nicht gespeicherte Änderungen einer anderen Sitzung, die jetzt nicht als eigene Datei aufbewahrt werden können: %2</translation>
    </message>
    <message>
        <source>unsaved changes of another session are kept as a file of their own in &apos;%1&apos;</source>
        <translation>nicht gespeicherte Änderungen einer anderen Sitzung werden als eigene Datei in &apos;%1&apos; aufbewahrt</translation>
    </message>
    <message>
        <source>some of these changes could not be made in this version, and are missing there; all of them are kept in &apos;%1&apos; for seven days</source>
        <translation>einige dieser Änderungen konnten in dieser Version nicht gemacht werden und fehlen dort; alle werden sieben Tage lang in &apos;%1&apos; aufbewahrt</translation>
    </message>
    <message>
        <source>unsaved changes of another session are still kept as they were sealed before, not with the password that holds now: %1</source>
        <translation>nicht gespeicherte Änderungen einer anderen Sitzung sind noch versiegelt wie zuvor, nicht mit dem Kennwort, das jetzt gilt: %1</translation>
    </message>
    <message>
        <source>another editor writes them</source>
        <translation>ein anderer Editor schreibt sie</translation>
    </message>
    <message>
        <source>it is not a file</source>
        <translation>es ist keine Datei</translation>
    </message>
    <message>
        <source>it is no journal</source>
        <translation>es ist kein Journal</translation>
    </message>
    <message>
        <source>a newer version of this program wrote it</source>
        <translation>eine neuere Version dieses Programms hat es geschrieben</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not used: %2</source>
        <translation>&apos;%1&apos; wird nicht benutzt: %2</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be read now: %2</source>
        <translation>&apos;%1&apos; kann jetzt nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1: changes are not kept safe against a crash until it is saved: %2</source>
        <translation>%1: bis zum Speichern sind die Änderungen nicht gegen einen Absturz gesichert: %2</translation>
    </message>
    <message>
        <source>%1: another program took away the journal that keeps its unsaved changes; it was written anew</source>
        <translation>%1: ein anderes Programm hat das Journal weggenommen, das die nicht gespeicherten Änderungen aufbewahrt; es wurde neu geschrieben</translation>
    </message>
    <message>
        <source>the system does not tell where it stands</source>
        <translation>das System sagt nicht, wo sie steht</translation>
    </message>
    <message>
        <source>a text in a journal is not in UTF-8</source>
        <translation>ein Text in einem Journal ist nicht in UTF-8</translation>
    </message>
    <message>
        <source>a block in a journal does not fit its field</source>
        <translation>ein Block in einem Journal passt nicht zu seinem Feld</translation>
    </message>
    <message>
        <source>The name &quot;%1...&quot; is longer than %2 characters.</source>
        <translation>Der Name &quot;%1...&quot; ist länger als %2 Zeichen.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be a name: it is empty.</source>
        <translation>&quot;%1&quot; kann kein Name sein: er ist leer.</translation>
    </message>
    <message>
        <source>A table &quot;%1&quot; already exists.</source>
        <translation>Eine Tabelle &quot;%1&quot; gibt es schon.</translation>
    </message>
    <message>
        <source>A database holds at most %1 tables.</source>
        <translation>Eine Datenbank hat höchstens %1 Tabellen.</translation>
    </message>
    <message>
        <source>There is no field type with the code %1.</source>
        <translation>Es gibt keinen Feldtyp mit dem Code %1.</translation>
    </message>
    <message>
        <source>A field &quot;%1&quot; already exists.</source>
        <translation>Ein Feld &quot;%1&quot; gibt es schon.</translation>
    </message>
    <message>
        <source>A table holds at most %1 fields.</source>
        <translation>Eine Tabelle hat höchstens %1 Felder.</translation>
    </message>
    <message>
        <source>A table holds at most %1 records.</source>
        <translation>Eine Tabelle hat höchstens %1 Datensätze.</translation>
    </message>
    <message>
        <source>A text of a block is not in UTF-8.</source>
        <translation>Ein Text eines Blocks ist nicht in UTF-8.</translation>
    </message>
    <message>
        <source>There is no table &quot;%1&quot;.</source>
        <translation>Es gibt keine Tabelle &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>There is no table number %1: the database has %2.</source>
        <translation>Es gibt keine Tabelle Nummer %1: die Datenbank hat %2.</translation>
    </message>
    <message>
        <source>There is no field number %1: the table has %2.</source>
        <translation>Es gibt kein Feld Nummer %1: die Tabelle hat %2.</translation>
    </message>
    <message>
        <source>There is no record number %1: the table has %2.</source>
        <translation>Es gibt keinen Datensatz Nummer %1: die Tabelle hat %2.</translation>
    </message>
    <message>
        <source>There is no step number %1: there are %2.</source>
        <translation>Es gibt keinen Schritt Nummer %1: es gibt %2.</translation>
    </message>
    <message>
        <source>No table is selected.</source>
        <translation>Es ist keine Tabelle ausgewählt.</translation>
    </message>
    <message>
        <source>No record is selected.</source>
        <translation>Es ist kein Datensatz ausgewählt.</translation>
    </message>
    <message>
        <source>No database is open: its file could not be loaded.</source>
        <translation>Es ist keine Datenbank geöffnet: ihre Datei konnte nicht geladen werden.</translation>
    </message>
    <message>
        <source>This database is in use: another file cannot be loaded into it.</source>
        <translation>Diese Datenbank wird benutzt: eine andere Datei kann nicht in sie geladen werden.</translation>
    </message>
    <message>
        <source>The database has no file name yet.</source>
        <translation>Die Datenbank hat noch keinen Dateinamen.</translation>
    </message>
    <message>
        <source>The password was not changed: %1.</source>
        <translation>Das Kennwort wurde nicht geändert: %1.</translation>
    </message>
    <message>
        <source>A value of this kind cannot be stored in a field.</source>
        <translation>Ein Wert dieser Art kann in keinem Feld stehen.</translation>
    </message>
    <message>
        <source>%1 records cannot be read.</source>
        <translation>%1 Datensätze können nicht gelesen werden.</translation>
    </message>
    <message>
        <source>%1 records cannot be added.</source>
        <translation>%1 Datensätze können nicht hinzugefügt werden.</translation>
    </message>
    <message>
        <source>The block has values of another type than the field.</source>
        <translation>Der Block hat Werte eines anderen Typs als das Feld.</translation>
    </message>
    <message>
        <source>The block has more values than there are records from number %1 on.</source>
        <translation>Der Block hat mehr Werte, als es Datensätze ab Nummer %1 gibt.</translation>
    </message>
    <message>
        <source>That is no order of the table&apos;s records.</source>
        <translation>Das ist keine Reihenfolge der Datensätze der Tabelle.</translation>
    </message>
    <message>
        <source>This is no block of a column: %1.</source>
        <translation>Das ist kein Block einer Spalte: %1.</translation>
    </message>
    <message>
        <source>it is no list</source>
        <translation>es ist keine Liste</translation>
    </message>
    <message>
        <source>it begins with no type</source>
        <translation>es beginnt mit keinem Typ</translation>
    </message>
    <message>
        <source>there is no type with the code %1</source>
        <translation>es gibt keinen Typ mit dem Code %1</translation>
    </message>
    <message>
        <source>its parts are not those of its type</source>
        <translation>seine Teile sind nicht die seines Typs</translation>
    </message>
    <message>
        <source>its last value is cut off</source>
        <translation>sein letzter Wert ist abgeschnitten</translation>
    </message>
    <message>
        <source>a text reaches beyond its bytes</source>
        <translation>ein Text reicht über seine Bytes hinaus</translation>
    </message>
    <message>
        <source>%1 before the running group of changes has ended.</source>
        <translation>%1, bevor die laufende Gruppe von Änderungen zu Ende ist.</translation>
    </message>
    <message>
        <source>The database cannot be saved</source>
        <translation>Die Datenbank kann nicht gespeichert werden</translation>
    </message>
    <message>
        <source>The password cannot be changed</source>
        <translation>Das Kennwort kann nicht geändert werden</translation>
    </message>
    <message>
        <source>No step can be taken back or made again</source>
        <translation>Kein Schritt kann zurückgenommen oder wiederholt werden</translation>
    </message>
    <message>
        <source>The database cannot go back to what is saved</source>
        <translation>Die Datenbank kann nicht zum Gespeicherten zurückkehren</translation>
    </message>
    <message>
        <source>No group of changes has begun.</source>
        <translation>Es hat keine Gruppe von Änderungen begonnen.</translation>
    </message>
    <message>
        <source>No step has begun.</source>
        <translation>Es hat kein Schritt begonnen.</translation>
    </message>
    <message>
        <source>There is nothing to take back.</source>
        <translation>Es gibt nichts zurückzunehmen.</translation>
    </message>
    <message>
        <source>There is nothing to make again.</source>
        <translation>Es gibt nichts zu wiederholen.</translation>
    </message>
    <message>
        <source>%1: the first steps can no longer be taken back: the memory for steps, %2 MiB, is used up</source>
        <translation>%1: die ersten Schritte können nicht mehr zurückgenommen werden: der Speicher für Schritte, %2 MiB, ist verbraucht</translation>
    </message>
    <message>
        <source>No component serves &quot;%1&quot;. Folders searched: %2.</source>
        <translation>Keine Komponente bietet &quot;%1&quot;. Durchsuchte Ordner: %2.</translation>
    </message>
    <message>
        <source>No component serves &quot;%1&quot;. Folders searched: %2. Of another version of the interface than %3: %4.</source>
        <translation>Keine Komponente bietet &quot;%1&quot;. Durchsuchte Ordner: %2. Von einer anderen Version der Schnittstelle als %3: %4.</translation>
    </message>
    <message>
        <source>The component &quot;%1&quot; cannot be loaded from %2: %3</source>
        <translation>Die Komponente &quot;%1&quot; kann nicht aus %2 geladen werden: %3</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has not a name for each value</source>
        <translation>&quot;%1&quot; hat nicht für jeden Wert einen Namen</translation>
    </message>
    <message>
        <source>its key has no value</source>
        <translation>sein Schlüssel hat keinen Wert</translation>
    </message>
    <message>
        <source>it has neither &quot;record&quot; nor &quot;key&quot;</source>
        <translation>es hat weder &quot;record&quot; noch &quot;key&quot;</translation>
    </message>
    <message>
        <source>there are no conflicts of a &quot;%1&quot;</source>
        <translation>es gibt keine Konflikte eines &quot;%1&quot;</translation>
    </message>
    <message>
        <source>there are no conflicts about a &quot;%1&quot;</source>
        <translation>es gibt keine Konflikte über &quot;%1&quot;</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has a record of another length</source>
        <translation>&quot;%1&quot; hat einen Datensatz anderer Länge</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has no value</source>
        <translation>&quot;%1&quot; hat keinen Wert</translation>
    </message>
    <message>
        <source>it is the same as a line before it</source>
        <translation>sie ist dieselbe wie eine Zeile davor</translation>
    </message>
    <message>
        <source>the current folder &quot;%1&quot; is not UTF-8: such a name cannot be told from another one</source>
        <translation>der aktuelle Ordner &quot;%1&quot; ist kein UTF-8: ein solcher Name ist von einem anderen nicht zu unterscheiden</translation>
    </message>
</context>
<context>
    <name>StoredMarks</name>
    <message>
        <source>stored: %1</source>
        <translation>gespeichert: %1</translation>
    </message>
</context>
<context>
    <name>StoredValues</name>
    <message>
        <source>The field has a type that there is none of.</source>
        <translation>Das Feld hat einen Typ, den es nicht gibt.</translation>
    </message>
</context>
<context>
    <name>TableCommands</name>
    <message>
        <source>&amp;Add...</source>
        <translation>&amp;Hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Umbenennen...</translation>
    </message>
    <message>
        <source>Re&amp;move...</source>
        <translation>&amp;Entfernen...</translation>
    </message>
    <message>
        <source>New table name</source>
        <translation>Name der neuen Tabelle</translation>
    </message>
    <message>
        <source>Table: &apos;%1&apos; already exists</source>
        <translation>Die Tabelle &apos;%1&apos; gibt es schon</translation>
    </message>
    <message>
        <source>Adding table %1</source>
        <translation>Tabelle %1 hinzufügen</translation>
    </message>
    <message>
        <source>Table&apos;s new name (%1)</source>
        <translation>Neuer Name der Tabelle (%1)</translation>
    </message>
    <message>
        <source>Renaming table %1</source>
        <translation>Tabelle %1 umbenennen</translation>
    </message>
    <message>
        <source>Do you want to remove table: &apos;%1&apos; ?</source>
        <translation>Soll die Tabelle &apos;%1&apos; entfernt werden?</translation>
    </message>
    <message>
        <source>Removing table %1</source>
        <translation>Tabelle %1 entfernen</translation>
    </message>
</context>
<context>
    <name>UndoCommands</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;History...</source>
        <translation>&amp;Verlauf...</translation>
    </message>
    <message>
        <source>Re&amp;vert to Saved...</source>
        <translation>Auf &amp;Gespeichertes zurück...</translation>
    </message>
    <message>
        <source>&amp;Undo %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>&amp;Redo %1</source>
        <translation>&amp;Wiederherstellen: %1</translation>
    </message>
    <message>
        <source>Do you want to go back to what is saved of &apos;%1&apos; ?</source>
        <translation>Soll zu dem zurückgegangen werden, was von &apos;%1&apos; gespeichert ist?</translation>
    </message>
    <message>
        <source>Revert to Saved</source>
        <translation>Auf Gespeichertes zurück</translation>
    </message>
</context>
<context>
    <name>qir::CellTextCommand</name>
    <message>
        <source>Record %1, %2</source>
        <translation>Datensatz %1, %2</translation>
    </message>
</context>
<context>
    <name>qir::Colours</name>
    <message>
        <source>&amp;System</source>
        <translation>&amp;System</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
</context>
<context>
    <name>qir::ConflictCommands</name>
    <message>
        <source>&amp;Merge Conflicts...</source>
        <translation>Konflikte einer Zusa&amp;mmenführung...</translation>
    </message>
    <message>
        <source>No merge has left conflicts here: there is no &apos;%1&apos;.</source>
        <translation>Keine Zusammenführung hat hier Konflikte hinterlassen: &apos;%1&apos; gibt es nicht.</translation>
    </message>
    <message>
        <source>The database no longer has there what the list of conflicts tells.<byte value="xd"/>
Replace it?</source>
        <translation>Die Datenbank hat dort nicht mehr, was die Liste der Konflikte sagt.<byte value="xd"/>
Ersetzen?</translation>
    </message>
    <message>
        <source>In %1 places the database no longer has what the list of conflicts tells.<byte value="xd"/>
Replace it?</source>
        <translation>An %1 Stellen hat die Datenbank nicht mehr, was die Liste der Konflikte sagt.<byte value="xd"/>
Ersetzen?</translation>
    </message>
    <message>
        <source>Conflicts resolved</source>
        <translation>Konflikte gelöst</translation>
    </message>
    <message>
        <source>Left, since the database no longer has what the list tells: %1.</source>
        <translation>Belassen, weil die Datenbank nicht mehr hat, was die Liste sagt: %1.</translation>
    </message>
    <message>
        <source>Left, since a field would not hold the value as it is: %1.</source>
        <translation>Belassen, weil ein Feld den Wert nicht so hielte, wie er ist: %1.</translation>
    </message>
    <message>
        <source>Left, since the list does not tell enough to take that side: %1. Carry it over by hand, then choose Leave as It Is.</source>
        <translation>Belassen, weil die Liste für diese Seite nicht genug sagt: %1. Von Hand übertragen, dann So lassen wählen.</translation>
    </message>
    <message>
        <source>All conflicts are resolved.<byte value="xd"/>
Save &apos;%1&apos; and remove &apos;%2&apos;?</source>
        <translation>Alle Konflikte sind gelöst.<byte value="xd"/>
&apos;%1&apos; speichern und &apos;%2&apos; entfernen?</translation>
    </message>
    <message>
        <source>All conflicts are resolved.<byte value="xd"/>
Remove &apos;%1&apos;?</source>
        <translation>Alle Konflikte sind gelöst.<byte value="xd"/>
&apos;%1&apos; entfernen?</translation>
    </message>
    <message>
        <source>it has changed since it was read; open the list again</source>
        <translation>sie hat sich geändert, seit sie gelesen wurde; die Liste neu öffnen</translation>
    </message>
    <message>
        <source>The records of &apos;%1&apos; are not as the merge has left them; they may be other ones.<byte value="xd"/>
Take that side there all the same?</source>
        <translation>Die Datensätze von &apos;%1&apos; sind nicht so, wie das Zusammenführen sie hinterlassen hat; es können andere sein.<byte value="xd"/>
Diese Seite dort trotzdem übernehmen?</translation>
    </message>
    <message>
        <source>The list does not tell whether the records of &apos;%1&apos; are still those that the merge meant.<byte value="xd"/>
Take that side there all the same?</source>
        <translation>Die Liste sagt nicht, ob die Datensätze von &apos;%1&apos; noch die sind, die das Zusammenführen gemeint hat.<byte value="xd"/>
Diese Seite dort trotzdem übernehmen?</translation>
    </message>
    <message>
        <source>Record %1 of &apos;%2&apos; is not as the merge has left it; it may be another one.<byte value="xd"/>
Take that side there all the same?</source>
        <translation>Datensatz %1 von &apos;%2&apos; ist nicht so, wie das Zusammenführen ihn hinterlassen hat; er kann ein anderer sein.<byte value="xd"/>
Diese Seite dort trotzdem übernehmen?</translation>
    </message>
    <message>
        <source>The list does not tell whether record %1 of &apos;%2&apos; is still the one that the merge meant.<byte value="xd"/>
Take that side there all the same?</source>
        <translation>Die Liste sagt nicht, ob Datensatz %1 von &apos;%2&apos; noch der ist, den das Zusammenführen gemeint hat.<byte value="xd"/>
Diese Seite dort trotzdem übernehmen?</translation>
    </message>
    <message>
        <source>Left, since the record may be another one now: %1. Take such a side by itself.</source>
        <translation>Belassen, weil der Datensatz jetzt ein anderer sein kann: %1. Solche einzeln übernehmen.</translation>
    </message>
</context>
<context>
    <name>qir::ConflictList</name>
    <message>
        <source>(nothing)</source>
        <translation>(nichts)</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Base</source>
        <translation>Ausgang</translation>
    </message>
    <message>
        <source>Ours</source>
        <translation>Unseres</translation>
    </message>
    <message>
        <source>Theirs</source>
        <translation>Ihres</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Stand</translation>
    </message>
    <message>
        <source>resolved: theirs</source>
        <translation>gelöst: ihres</translation>
    </message>
    <message>
        <source>resolved: ours</source>
        <translation>gelöst: unseres</translation>
    </message>
    <message>
        <source>resolved: as it is</source>
        <translation>gelöst: so wie es ist</translation>
    </message>
    <message>
        <source>open; the database has %1 now</source>
        <translation>offen; die Datenbank hat jetzt %1</translation>
    </message>
    <message>
        <source>open; the database has another record now</source>
        <translation>offen; die Datenbank hat jetzt einen anderen Datensatz</translation>
    </message>
    <message>
        <source>open; the database has no such place now</source>
        <translation>offen; die Datenbank hat diese Stelle nicht mehr</translation>
    </message>
    <message>
        <source>open; it is not clear which record is meant</source>
        <translation>offen; es ist nicht klar, welcher Datensatz gemeint ist</translation>
    </message>
    <message>
        <source>open; only ours can be taken here</source>
        <translation>offen; hier kann nur unseres genommen werden</translation>
    </message>
    <message>
        <source>open</source>
        <translation>offen</translation>
    </message>
    <message>
        <source>open; the table is another one now</source>
        <translation>offen; die Tabelle ist jetzt eine andere</translation>
    </message>
    <message>
        <source>open; the records are not as the merge has left them</source>
        <translation>offen; die Datensätze sind nicht so, wie das Zusammenführen sie hinterlassen hat</translation>
    </message>
    <message>
        <source>open; only their order tells the records</source>
        <translation>offen; nur ihre Reihenfolge sagt, welche Datensätze es sind</translation>
    </message>
    <message>
        <source>open; the record is not as the merge has left it</source>
        <translation>offen; der Datensatz ist nicht so, wie das Zusammenführen ihn hinterlassen hat</translation>
    </message>
    <message>
        <source>open; only its number tells the record</source>
        <translation>offen; nur seine Nummer sagt, welcher Datensatz es ist</translation>
    </message>
</context>
<context>
    <name>qir::ConflictsWindow</name>
    <message>
        <source>Merge Conflicts</source>
        <translation>Konflikte einer Zusammenführung</translation>
    </message>
    <message>
        <source>Conflicts</source>
        <translation>Konflikte</translation>
    </message>
    <message>
        <source>Take &amp;Ours</source>
        <translation>&amp;Unseres nehmen</translation>
    </message>
    <message>
        <source>Take &amp;Theirs</source>
        <translation>&amp;Ihres nehmen</translation>
    </message>
    <message>
        <source>Leave as It &amp;Is</source>
        <translation>So &amp;lassen</translation>
    </message>
    <message>
        <source>It was decided by hand: what stands there now is right</source>
        <translation>Es wurde von Hand entschieden: was jetzt dort steht, ist richtig</translation>
    </message>
    <message>
        <source>&amp;Remove the List...</source>
        <translation>Liste &amp;entfernen...</translation>
    </message>
    <message>
        <source>&amp;All Ours</source>
        <translation>&amp;Alle unsere</translation>
    </message>
    <message>
        <source>A&amp;ll Theirs</source>
        <translation>Alle i&amp;hre</translation>
    </message>
    <message>
        <source>%1 of %2 conflicts are resolved.</source>
        <translation>%1 von %2 Konflikten sind gelöst.</translation>
    </message>
</context>
<context>
    <name>qir::DifferenceStrip</name>
    <message>
        <source>Left differences</source>
        <translation>Unterschiede links</translation>
    </message>
    <message>
        <source>Right differences</source>
        <translation>Unterschiede rechts</translation>
    </message>
    <message>
        <source>%1 of %2 records differ</source>
        <translation>%1 von %2 Datensätzen verschieden</translation>
    </message>
</context>
<context>
    <name>qir::DifferencesSummary</name>
    <message>
        <source>&amp;Summary of Differences</source>
        <translation>Zusammen&amp;fassung der Unterschiede</translation>
    </message>
    <message>
        <source>Summary of Differences</source>
        <translation>Zusammenfassung der Unterschiede</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Tables and how they differ</source>
        <translation>Die Tabellen und wie sie sich unterscheiden</translation>
    </message>
    <message>
        <source>The tables could not be read. Choose the summary again to try once more.</source>
        <translation>Die Tabellen konnten nicht gelesen werden. Die Zusammenfassung noch einmal wählen, um es erneut zu versuchen.</translation>
    </message>
</context>
<context>
    <name>qir::DtbEditor</name>
    <message>
        <source>E&amp;xit</source>
        <translation>B&amp;eenden</translation>
    </message>
</context>
<context>
    <name>qir::FileSigns</name>
    <message>
        <source>changes not saved</source>
        <translation>Änderungen nicht gespeichert</translation>
    </message>
    <message>
        <source>protected by a password</source>
        <translation>durch ein Kennwort geschützt</translation>
    </message>
    <message>
        <source>read-only</source>
        <translation>schreibgeschützt</translation>
    </message>
    <message>
        <source>%1, changed %2</source>
        <translation>%1, geändert %2</translation>
    </message>
    <message>
        <source>Not on disk</source>
        <translation>Nicht auf der Platte</translation>
    </message>
    <message>
        <source>Changes are not saved</source>
        <translation>Änderungen sind nicht gespeichert</translation>
    </message>
    <message>
        <source>Protected by a password</source>
        <translation>Durch ein Kennwort geschützt</translation>
    </message>
    <message>
        <source>Read-only</source>
        <translation>Schreibgeschützt</translation>
    </message>
    <message>
        <source>Made %1</source>
        <translation>Angelegt %1</translation>
    </message>
    <message>
        <source>Read %1</source>
        <translation>Gelesen %1</translation>
    </message>
</context>
<context>
    <name>qir::FilesAtHand</name>
    <message>
        <source>&amp;New Database...</source>
        <translation>&amp;Neue Datenbank...</translation>
    </message>
    <message>
        <source>&amp;Forget...</source>
        <translation>&amp;Vergessen...</translation>
    </message>
    <message>
        <source>&amp;Desktop&apos;s File Dialogs</source>
        <translation>&amp;Dateidialoge des Desktops</translation>
    </message>
    <message>
        <source>&amp;Recent Files</source>
        <translation>&amp;Zuletzt geöffnete Dateien</translation>
    </message>
    <message>
        <source>Recent Pa&amp;irs</source>
        <translation>Zuletzt geöffnete &amp;Paare</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <translation>%1 und %2</translation>
    </message>
    <message>
        <source>&amp;Keep Names of Protected Files</source>
        <translation>Namen geschützter Dateien &amp;behalten</translation>
    </message>
    <message>
        <source>Forget recent files and pairs, key fields, the folder used last and the window&apos;s place?</source>
        <translation>Zuletzt geöffnete Dateien und Paare, Schlüsselfelder, den zuletzt benutzten Ordner und den Platz des Fensters vergessen?</translation>
    </message>
    <message>
        <source>This cannot be kept: what is remembered cannot be written. It holds until the end of the program.</source>
        <translation>Das lässt sich nicht dauerhaft behalten: Gemerktes kann nicht geschrieben werden. Es gilt bis zum Ende des Programms.</translation>
    </message>
</context>
<context>
    <name>qir::FindBar</name>
    <message>
        <source>Find and replace</source>
        <translation>Suchen und ersetzen</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Gesuchter Text</translation>
    </message>
    <message>
        <source>Text to replace it with</source>
        <translation>Text, der ihn ersetzt</translation>
    </message>
    <message>
        <source>Clo&amp;se</source>
        <translation>Schlie&amp;ßen</translation>
    </message>
    <message>
        <source>Cells found</source>
        <translation>Gefundene Zellen</translation>
    </message>
    <message>
        <source>Match &amp;case</source>
        <translation>&amp;Groß-/Kleinschreibung</translation>
    </message>
    <message>
        <source>&amp;Whole cell</source>
        <translation>Ganze &amp;Zelle</translation>
    </message>
    <message>
        <source>Regular e&amp;xpression</source>
        <translation>Regulärer &amp;Ausdruck</translation>
    </message>
    <message>
        <source>All ta&amp;bles</source>
        <translation>Alle &amp;Tabellen</translation>
    </message>
    <message>
        <source>B&amp;oth panes</source>
        <translation>&amp;Beide Seiten</translation>
    </message>
    <message>
        <source>Fi&amp;nd:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>Replace w&amp;ith:</source>
        <translation>Ersetzen &amp;durch:</translation>
    </message>
    <message>
        <source>Re&amp;place</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>Replace &amp;All</source>
        <translation>A&amp;lle ersetzen</translation>
    </message>
</context>
<context>
    <name>qir::FindCommands</name>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Suchen...</translation>
    </message>
    <message>
        <source>Find &amp;Next</source>
        <translation>We&amp;itersuchen</translation>
    </message>
    <message>
        <source>Find Pre&amp;vious</source>
        <translation>Rückwär&amp;ts suchen</translation>
    </message>
    <message>
        <source>R&amp;eplace...</source>
        <translation>Erset&amp;zen...</translation>
    </message>
    <message>
        <source>Searching... Escape stops it</source>
        <translation>Suche läuft... Esc hält sie an</translation>
    </message>
    <message>
        <source>Stopped: not all cells were looked at</source>
        <translation>Angehalten: nicht alle Zellen wurden angesehen</translation>
    </message>
    <message>
        <source>The first %1 are listed</source>
        <translation>Die ersten %1 sind aufgeführt</translation>
    </message>
    <message>
        <source>1 cell</source>
        <translation>1 Zelle</translation>
    </message>
    <message>
        <source>%1 cells</source>
        <translation>%1 Zellen</translation>
    </message>
    <message>
        <source>That cell has changed: searching again</source>
        <translation>Diese Zelle hat sich geändert: neue Suche</translation>
    </message>
</context>
<context>
    <name>qir::GridModel</name>
    <message>
        <source>empty</source>
        <translation>leer</translation>
    </message>
    <message>
        <source>record %1</source>
        <translation>Datensatz %1</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>verschieden</translation>
    </message>
    <message>
        <source>not as stored</source>
        <translation>nicht wie gespeichert</translation>
    </message>
    <message>
        <source>record %1, differs</source>
        <translation>Datensatz %1, verschieden</translation>
    </message>
    <message>
        <source>Record %1 differs</source>
        <translation>Datensatz %1 ist verschieden</translation>
    </message>
</context>
<context>
    <name>qir::GuideWindow</name>
    <message>
        <source>User Guide</source>
        <translation>Benutzerhandbuch</translation>
    </message>
    <message>
        <source>User guide</source>
        <translation>Benutzerhandbuch</translation>
    </message>
    <message>
        <source>Search the guide</source>
        <translation>Im Handbuch suchen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Contents of the guide</source>
        <translation>Inhalt des Handbuchs</translation>
    </message>
</context>
<context>
    <name>qir::HistoryWindow</name>
    <message>
        <source>Before the oldest step that is kept</source>
        <translation>Vor dem ältesten aufbewahrten Schritt</translation>
    </message>
    <message>
        <source>As opened</source>
        <translation>Wie geöffnet</translation>
    </message>
    <message>
        <source>HH:mm:ss</source>
        <translation>HH:mm:ss</translation>
    </message>
    <message>
        <source>yyyy-MM-dd HH:mm:ss</source>
        <translation>yyyy-MM-dd HH:mm:ss</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Steps</source>
        <translation>Schritte</translation>
    </message>
    <message>
        <source>&amp;Go There</source>
        <translation>&amp;Dorthin gehen</translation>
    </message>
</context>
<context>
    <name>qir::HitList</name>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Pane</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>qir::KeptWindow</name>
    <message>
        <source>Another program&apos;s version</source>
        <translation>Version eines anderen Programms</translation>
    </message>
    <message>
        <source>Could not be saved</source>
        <translation>Konnte nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Replaced by a restored one</source>
        <translation>Durch eine wiederhergestellte ersetzt</translation>
    </message>
    <message>
        <source>Changes not saved</source>
        <translation>Nicht gespeicherte Änderungen</translation>
    </message>
    <message>
        <source>A protected file</source>
        <translation>Eine geschützte Datei</translation>
    </message>
    <message>
        <source>No versions are kept.</source>
        <translation>Es sind keine Versionen aufbewahrt.</translation>
    </message>
    <message>
        <source>Kept Versions</source>
        <translation>Aufbewahrte Versionen</translation>
    </message>
    <message>
        <source>Kept versions</source>
        <translation>Aufbewahrte Versionen</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>What it is</source>
        <translation>Was es ist</translation>
    </message>
    <message>
        <source>Where it stands</source>
        <translation>Wo es steht</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Compare</source>
        <translation>&amp;Vergleichen</translation>
    </message>
    <message>
        <source>Opens it in the other pane, beside the file as it is now</source>
        <translation>Öffnet sie auf der anderen Seite, neben der Datei, wie sie jetzt ist</translation>
    </message>
    <message>
        <source>&amp;Remove...</source>
        <translation>&amp;Entfernen...</translation>
    </message>
    <message>
        <source>yyyy-MM-dd HH:mm:ss</source>
        <translation>yyyy-MM-dd HH:mm:ss</translation>
    </message>
</context>
<context>
    <name>qir::KeyedChanges</name>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Änderung</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>%1 times</source>
        <translation>%1-mal</translation>
    </message>
    <message>
        <source>field only right</source>
        <translation>Feld nur rechts</translation>
    </message>
    <message>
        <source>field only left</source>
        <translation>Feld nur links</translation>
    </message>
    <message>
        <source>removed</source>
        <translation>entfernt</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>added</source>
        <translation>hinzugefügt</translation>
    </message>
    <message>
        <source>moved</source>
        <translation>verschoben</translation>
    </message>
    <message>
        <source>record %1</source>
        <translation>Datensatz %1</translation>
    </message>
    <message>
        <source>%1: %2 becomes %3, not %4</source>
        <translation>%1: %2 wird %3, nicht %4</translation>
    </message>
    <message>
        <source>%1: the record is removed</source>
        <translation>%1: der Datensatz wird entfernt</translation>
    </message>
    <message>
        <source>%1: the record is added</source>
        <translation>%1: der Datensatz wird hinzugefügt</translation>
    </message>
</context>
<context>
    <name>qir::KeyedCommands</name>
    <message>
        <source>Differences by &amp;Key...</source>
        <translation>Unterschiede nach &amp;Schlüssel...</translation>
    </message>
    <message>
        <source>Select a table that both databases have.</source>
        <translation>Wählen Sie eine Tabelle, die beide Datenbanken haben.</translation>
    </message>
</context>
<context>
    <name>qir::KeyedOptions</name>
    <message>
        <source>Key fields</source>
        <translation>Schlüsselfelder</translation>
    </message>
    <message>
        <source>Fields that are not compared</source>
        <translation>Felder, die nicht verglichen werden</translation>
    </message>
    <message>
        <source>&amp;Not compared:</source>
        <translation>&amp;Nicht verglichen:</translation>
    </message>
    <message>
        <source>How far numbers may be apart</source>
        <translation>Wie weit Zahlen auseinander liegen dürfen</translation>
    </message>
    <message>
        <source>N&amp;umbers up to so far apart:</source>
        <translation>&amp;Zahlen höchstens so weit auseinander:</translation>
    </message>
    <message>
        <source>&amp;Case does not count</source>
        <translation>&amp;Groß-/Kleinschreibung zählt nicht</translation>
    </message>
    <message>
        <source>&amp;Blanks do not count</source>
        <translation>&amp;Leerzeichen zählen nicht</translation>
    </message>
    <message>
        <source>Key of %1:</source>
        <translation>Schlüssel von %1:</translation>
    </message>
</context>
<context>
    <name>qir::KeyedWindow</name>
    <message>
        <source>Differences by Key</source>
        <translation>Unterschiede nach Schlüssel</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>An&amp;halten</translation>
    </message>
    <message>
        <source>Compare &amp;Again</source>
        <translation>Erneut &amp;vergleichen</translation>
    </message>
    <message>
        <source>Search in the changes</source>
        <translation>In den Änderungen suchen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Which changes are shown</source>
        <translation>Welche Änderungen gezeigt werden</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Added</source>
        <translation>Hinzugefügt</translation>
    </message>
    <message>
        <source>Removed</source>
        <translation>Entfernt</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Moved</source>
        <translation>Verschoben</translation>
    </message>
    <message>
        <source>Fields and doubles</source>
        <translation>Felder und Doppelte</translation>
    </message>
    <message>
        <source>Changes by key</source>
        <translation>Änderungen nach Schlüssel</translation>
    </message>
    <message>
        <source>Stopped. Check the fields of the key.</source>
        <translation>Angehalten. Prüfen Sie die Felder des Schlüssels.</translation>
    </message>
    <message>
        <source>The tables have changed since they were compared.</source>
        <translation>Die Tabellen haben sich seit dem Vergleich geändert.</translation>
    </message>
    <message>
        <source>The tables have no field in common.</source>
        <translation>Die Tabellen haben kein gemeinsames Feld.</translation>
    </message>
    <message>
        <source>No field has values that are unique on both sides. Check the fields of the key.</source>
        <translation>Kein Feld hat auf beiden Seiten eindeutige Werte. Prüfen Sie die Felder des Schlüssels.</translation>
    </message>
    <message>
        <source>Comparing...</source>
        <translation>Vergleich läuft...</translation>
    </message>
    <message>
        <source>%1 added, %2 removed, %3 changed, %4 moved.</source>
        <translation>%1 hinzugefügt, %2 entfernt, %3 geändert, %4 verschoben.</translation>
    </message>
    <message>
        <source>The key is not unique: on the left the records %1 and %2 have the same.</source>
        <translation>Der Schlüssel ist nicht eindeutig: links haben die Datensätze %1 und %2 denselben.</translation>
    </message>
    <message>
        <source>The key is not unique: on the right the records %1 and %2 have the same.</source>
        <translation>Der Schlüssel ist nicht eindeutig: rechts haben die Datensätze %1 und %2 denselben.</translation>
    </message>
    <message>
        <source>&amp;Tick all</source>
        <translation>Alle an&amp;haken</translation>
    </message>
    <message>
        <source>Carry to the &amp;Left...</source>
        <translation>Nach &amp;links übertragen...</translation>
    </message>
    <message>
        <source>Carry to the &amp;Right...</source>
        <translation>Nach &amp;rechts übertragen...</translation>
    </message>
    <message>
        <source>Re&amp;port...</source>
        <translation>&amp;Bericht...</translation>
    </message>
    <message>
        <source>No field of the key is checked.</source>
        <translation>Kein Feld des Schlüssels ist angekreuzt.</translation>
    </message>
    <message>
        <source>The tables could not be read.</source>
        <translation>Die Tabellen konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Stopped. The tables were not read.</source>
        <translation>Abgebrochen. Die Tabellen wurden nicht gelesen.</translation>
    </message>
    <message>
        <source>Searching...</source>
        <translation>Suche läuft...</translation>
    </message>
</context>
<context>
    <name>qir::NoticeBar</name>
    <message>
        <source>Show what is on disk now, at the same table and cell.</source>
        <translation>Zeigt, was jetzt auf der Platte steht, bei derselben Tabelle und Zelle.</translation>
    </message>
    <message>
        <source>Go on with what is shown; the next save writes it over the file.</source>
        <translation>Macht mit dem Gezeigten weiter; das nächste Speichern schreibt es über die Datei.</translation>
    </message>
    <message>
        <source>Open what is on disk now in the other pane.</source>
        <translation>Öffnet auf der anderen Seite, was jetzt auf der Platte steht.</translation>
    </message>
    <message>
        <source>Close this line. Nothing is decided by that.</source>
        <translation>Schließt diese Zeile. Damit wird nichts entschieden.</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Keep Mine</source>
        <translation>Meine behalten</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>qir::OnlyDifferences</name>
    <message>
        <source>Only &amp;Differences</source>
        <translation>Nur &amp;Unterschiede</translation>
    </message>
    <message>
        <source>Tables that only one side has, or has records in, are shown whole</source>
        <translation>Tabellen, die nur eine Seite hat oder in der nur eine Seite Datensätze hat, werden ganz gezeigt</translation>
    </message>
    <message>
        <source>The tables are equal: there is nothing to show</source>
        <translation>Die Tabellen sind gleich: es gibt nichts zu zeigen</translation>
    </message>
    <message>
        <source>%1 of %2 records differ</source>
        <translation>%1 von %2 Datensätzen verschieden</translation>
    </message>
</context>
<context>
    <name>qir::OutsideChanges</name>
    <message>
        <source>Notices</source>
        <translation>Hinweise</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not on disk any more.</source>
        <translation>&apos;%1&apos; ist nicht mehr auf der Platte.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be read any more.</source>
        <translation>&apos;%1&apos; kann nicht mehr gelesen werden.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is back on disk as it was.</source>
        <translation>&apos;%1&apos; ist wieder auf der Platte, wie es war.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is back on disk with other contents.</source>
        <translation>&apos;%1&apos; ist mit anderem Inhalt wieder auf der Platte.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was changed by another program.</source>
        <translation>&apos;%1&apos; wurde von einem anderen Programm geändert.</translation>
    </message>
</context>
<context>
    <name>qir::PasswordAids</name>
    <message>
        <source>Caps Lock is on.</source>
        <translation>Die Feststelltaste ist an.</translation>
    </message>
    <message>
        <source>Hide what is typed</source>
        <translation>Eingabe verbergen</translation>
    </message>
    <message>
        <source>Show what is typed</source>
        <translation>Eingabe zeigen</translation>
    </message>
</context>
<context>
    <name>qir::Progresso</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
</context>
<context>
    <name>qir::Room</name>
    <message>
        <source>&amp;Stretch Last Column</source>
        <translation>&amp;Letzte Spalte dehnen</translation>
    </message>
    <message>
        <source>&amp;List Beside Table in Wide Windows</source>
        <translation>L&amp;iste in breiten Fenstern neben der Tabelle</translation>
    </message>
</context>
<context>
    <name>qir::SummaryModel</name>
    <message>
        <source>other fields</source>
        <translation>andere Felder</translation>
    </message>
    <message>
        <source>other types</source>
        <translation>andere Typen</translation>
    </message>
    <message>
        <source>only left</source>
        <translation>nur links</translation>
    </message>
    <message>
        <source>only right</source>
        <translation>nur rechts</translation>
    </message>
    <message>
        <source>equal</source>
        <translation>gleich</translation>
    </message>
    <message>
        <source>%1 and %2 records</source>
        <translation>%1 und %2 Datensätze</translation>
    </message>
    <message>
        <source>1 cell</source>
        <translation>1 Zelle</translation>
    </message>
    <message>
        <source>%1 cells</source>
        <translation>%1 Zellen</translation>
    </message>
    <message>
        <source>%1 in 1 record</source>
        <translation>%1 in 1 Datensatz</translation>
    </message>
    <message>
        <source>%1 in %2 records</source>
        <translation>%1 in %2 Datensätzen</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Unterschied</translation>
    </message>
    <message>
        <source>Left records</source>
        <translation>Datensätze links</translation>
    </message>
    <message>
        <source>Right records</source>
        <translation>Datensätze rechts</translation>
    </message>
    <message>
        <source>Fields</source>
        <translation>Felder</translation>
    </message>
</context>
<context>
    <name>qir::ToolBar</name>
    <message>
        <source>Tool &amp;Bar</source>
        <translation>&amp;Werkzeugleiste</translation>
    </message>
    <message>
        <source>Tool Bar</source>
        <translation>Werkzeugleiste</translation>
    </message>
</context>
<context>
    <name>qir::frmCustomInputBox</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Antwort</translation>
    </message>
</context>
<context>
    <name>qir::frmListaStringhePlain</name>
    <message>
        <source>Choices</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
</TS>
