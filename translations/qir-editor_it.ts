<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it">
<context>
    <name>AreaClipboard</name>
    <message>
        <source>&amp;Copy</source>
        <translation>C&amp;opia</translation>
    </message>
    <message>
        <source>Cop&amp;y with Headers</source>
        <translation>Copia con i&amp;ntestazioni</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Incolla</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Incolla</translation>
    </message>
    <message>
        <source>row %1, column %2 of the block</source>
        <translation>riga %1, colonna %2 del blocco</translation>
    </message>
    <message>
        <source>record %1, %2, &quot;%3&quot;</source>
        <translation>record %1, %2, &quot;%3&quot;</translation>
    </message>
    <message>
        <source>%1 pasted values lay outside the selection (first: %2)</source>
        <translation>%1 valori incollati erano fuori della selezione (il primo: %2)</translation>
    </message>
    <message>
        <source>%1 are stored otherwise (first: %2)</source>
        <translation>%1 sono memorizzati diversamente (il primo: %2)</translation>
    </message>
</context>
<context>
    <name>CarryCommands</name>
    <message>
        <source>&amp;Carry Cells Across</source>
        <translation>&amp;Trasferisci celle</translation>
    </message>
    <message>
        <source>Carry &amp;Record Across</source>
        <translation>Tras&amp;ferisci record</translation>
    </message>
    <message>
        <source>Carry Ta&amp;ble Across</source>
        <translation>Trasferisci ta&amp;bella</translation>
    </message>
    <message>
        <source>Carry these values too? With No the cells that would not take them stay as they are.</source>
        <translation>Trasferire anche questi valori? Con No le celle che non li accetterebbero restano come sono.</translation>
    </message>
    <message>
        <source>Carry the values all the same?</source>
        <translation>Trasferire i valori lo stesso?</translation>
    </message>
    <message>
        <source>Cells are carried where both sides show the same table</source>
        <translation>Le celle si trasferiscono dove i due lati mostrano la stessa tabella</translation>
    </message>
    <message>
        <source>The other side does not have all of the selected cells.</source>
        <translation>L&apos;altro lato non ha tutte le celle selezionate.</translation>
    </message>
    <message>
        <source>There is no record here that the other side&apos;s table could take.</source>
        <translation>Qui non c&apos;è nessun record che la tabella dell&apos;altro lato possa ricevere.</translation>
    </message>
    <message>
        <source>Carried record of %1</source>
        <translation>Record di %1 trasferito</translation>
    </message>
    <message>
        <source>Added as record %1</source>
        <translation>Aggiunto come record %1</translation>
    </message>
    <message>
        <source>The table to be carried stands on the other side only.</source>
        <translation>La tabella da trasferire si trova solo sull&apos;altro lato.</translation>
    </message>
    <message>
        <source>Copy table &apos;%1&apos; to the other side, which has none of this name? Records: %2.</source>
        <translation>Copiare la tabella &apos;%1&apos; sull&apos;altro lato, che non ne ha una con questo nome? Record: %2.</translation>
    </message>
    <message>
        <source>A table is carried where both sides show the same one.</source>
        <translation>Una tabella si trasferisce dove i due lati mostrano la stessa.</translation>
    </message>
    <message>
        <source>The records are equal</source>
        <translation>I record sono uguali</translation>
    </message>
    <message>
        <source>Make the records of table &apos;%1&apos; on the %2 equal to those on the %3?
Changed: %4, added: %5, removed: %6.</source>
        <translation>Rendere i record della tabella &apos;%1&apos; a %2 uguali a quelli a %3?
Modificati: %4, aggiunti: %5, rimossi: %6.</translation>
    </message>
    <message>
        <source>right</source>
        <translation>destra</translation>
    </message>
    <message>
        <source>left</source>
        <translation>sinistra</translation>
    </message>
    <message>
        <source>Fields that only one side has stay as they are.</source>
        <translation>I campi che ha un lato solo restano come sono.</translation>
    </message>
    <message>
        <source>Changed: %1, added: %2, removed: %3</source>
        <translation>Modificati: %1, aggiunti: %2, rimossi: %3</translation>
    </message>
    <message>
        <source>Carried table %1</source>
        <translation>Tabella %1 trasferita</translation>
    </message>
</context>
<context>
    <name>CarryLosses</name>
    <message>
        <source>&apos;%1&apos; in record %2, field &apos;%3&apos;</source>
        <translation>&apos;%1&apos; nel record %2, campo &apos;%3&apos;</translation>
    </message>
    <message>
        <source>Field &apos;%1&apos; is %2 on the left and %3 on the right.</source>
        <translation>Il campo &apos;%1&apos; è %2 a sinistra e %3 a destra.</translation>
    </message>
    <message>
        <source>So are %1 more fields.</source>
        <translation>Così altri %1 campi.</translation>
    </message>
    <message>
        <source>One value would not stay what it is: %1.</source>
        <translation>Un valore non resterebbe quello che è: %1.</translation>
    </message>
    <message>
        <source>%1 values would not stay what they are, the first is %2.</source>
        <translation>%1 valori non resterebbero quelli che sono, il primo è %2.</translation>
    </message>
</context>
<context>
    <name>CellSearch</name>
    <message>
        <source>No regular expression: %1 (at character %2)</source>
        <translation>Non è un&apos;espressione regolare: %1 (al carattere %2)</translation>
    </message>
</context>
<context>
    <name>CloneCommands</name>
    <message>
        <source>&amp;Copy to Other Database</source>
        <translation>&amp;Copia nell&apos;altro database</translation>
    </message>
    <message>
        <source>Make Other Table as &amp;Long</source>
        <translation>Rendi l&apos;altra tabella altrettanto &amp;lunga</translation>
    </message>
    <message>
        <source>&amp;Copy Selection to Other Table</source>
        <translation>&amp;Copia la selezione nell&apos;altra tabella</translation>
    </message>
    <message>
        <source>Copy of table %1</source>
        <translation>Copia della tabella %1</translation>
    </message>
    <message>
        <source>Copy Cell content?</source>
        <translation>Copiare il contenuto delle celle?</translation>
    </message>
    <message>
        <source>Records for %1</source>
        <translation>Record per %1</translation>
    </message>
    <message>
        <source>Copy of cells to %1</source>
        <translation>Copia di celle in %1</translation>
    </message>
</context>
<context>
    <name>CloseCommands</name>
    <message>
        <source>&amp;Close</source>
        <translation>C&amp;hiudi</translation>
    </message>
</context>
<context>
    <name>DifferenceWalk</name>
    <message>
        <source>&amp;Next Difference</source>
        <translation>Differenza &amp;successiva</translation>
    </message>
    <message>
        <source>&amp;Previous Difference</source>
        <translation>Differenza &amp;precedente</translation>
    </message>
    <message>
        <source>&amp;First Difference</source>
        <translation>P&amp;rima differenza</translation>
    </message>
    <message>
        <source>&amp;Last Difference</source>
        <translation>U&amp;ltima differenza</translation>
    </message>
    <message>
        <source>Ne&amp;xt Differing Cell</source>
        <translation>C&amp;ella diversa successiva</translation>
    </message>
    <message>
        <source>Pre&amp;vious Differing Cell</source>
        <translation>Cella di&amp;versa precedente</translation>
    </message>
    <message>
        <source>The two lists are not lined up: Mode &gt; Compare Again does that</source>
        <translation>I due elenchi non sono allineati: Modo &gt; Confronta di nuovo li allinea</translation>
    </message>
    <message>
        <source>No further difference</source>
        <translation>Nessuna altra differenza</translation>
    </message>
    <message>
        <source>No earlier difference</source>
        <translation>Nessuna differenza precedente</translation>
    </message>
</context>
<context>
    <name>DifferenceWords</name>
    <message>
        <source>differs</source>
        <translation>diverso</translation>
    </message>
    <message>
        <source>only here</source>
        <translation>solo qui</translation>
    </message>
    <message>
        <source>missing here</source>
        <translation>manca qui</translation>
    </message>
    <message>
        <source>left: %1, missing on the right</source>
        <translation>a sinistra: %1, manca a destra</translation>
    </message>
    <message>
        <source>missing on the left, right: %1</source>
        <translation>manca a sinistra, a destra: %1</translation>
    </message>
    <message>
        <source>left: %1, right: %2</source>
        <translation>a sinistra: %1, a destra: %2</translation>
    </message>
</context>
<context>
    <name>EditCommands</name>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Elimina</translation>
    </message>
    <message>
        <source>Fill Do&amp;wn</source>
        <translation>Riempi in &amp;basso</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>Sele&amp;ziona tutto</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Eliminazione</translation>
    </message>
    <message>
        <source>Fill Down</source>
        <translation>Riempimento in basso</translation>
    </message>
</context>
<context>
    <name>FieldCommands</name>
    <message>
        <source>&amp;Add...</source>
        <translation>&amp;Aggiungi...</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Rinomina...</translation>
    </message>
    <message>
        <source>Re&amp;move...</source>
        <translation>Ri&amp;muovi...</translation>
    </message>
    <message>
        <source>Resi&amp;ze Text...</source>
        <translation>Ridimensiona &amp;testo...</translation>
    </message>
    <message>
        <source>No selected Table</source>
        <translation>Nessuna tabella selezionata</translation>
    </message>
    <message>
        <source>New field name</source>
        <translation>Nome del nuovo campo</translation>
    </message>
    <message>
        <source>Field: &apos;%1&apos; already exists</source>
        <translation>Il campo &apos;%1&apos; esiste già</translation>
    </message>
    <message>
        <source>Adding field %1</source>
        <translation>Aggiunta del campo %1</translation>
    </message>
    <message>
        <source>New field size</source>
        <translation>Dimensione del nuovo campo</translation>
    </message>
    <message>
        <source>Field &apos;%1&apos; was added to table &apos;%2&apos;.</source>
        <translation>Il campo &apos;%1&apos; è stato aggiunto alla tabella &apos;%2&apos;.</translation>
    </message>
    <message>
        <source>Tipi</source>
        <translation>Tipi</translation>
    </message>
    <message>
        <source>Field&apos;s new name (%1)</source>
        <translation>Nuovo nome del campo (%1)</translation>
    </message>
    <message>
        <source>Renaming field %1</source>
        <translation>Nuovo nome del campo %1</translation>
    </message>
    <message>
        <source>Do you want to remove field: &apos;%1&apos; ?</source>
        <translation>Rimuovere il campo &apos;%1&apos;?</translation>
    </message>
    <message>
        <source>Removing field %1</source>
        <translation>Rimozione del campo %1</translation>
    </message>
    <message>
        <source>Field size</source>
        <translation>Dimensione del campo</translation>
    </message>
    <message>
        <source>Resizing field %1</source>
        <translation>Nuova dimensione del campo %1</translation>
    </message>
</context>
<context>
    <name>GoToCommand</name>
    <message>
        <source>&amp;Go To...</source>
        <translation>&amp;Vai a...</translation>
    </message>
    <message>
        <source>Record, field, or record, field</source>
        <translation>Record, campo, oppure record, campo</translation>
    </message>
    <message>
        <source>There is no &apos;%1&apos; in this table of %2 records</source>
        <translation>Non c&apos;è &apos;%1&apos; in questa tabella di %2 record</translation>
    </message>
</context>
<context>
    <name>KeptVersions</name>
    <message>
        <source>Kept &amp;Versions...</source>
        <translation>&amp;Versioni conservate...</translation>
    </message>
    <message>
        <source>Do you want to remove &apos;%1&apos; for good ?</source>
        <translation>Rimuovere &apos;%1&apos; per sempre?</translation>
    </message>
    <message>
        <source>&apos;%1&apos; could not be removed</source>
        <translation>&apos;%1&apos; non ha potuto essere rimosso</translation>
    </message>
</context>
<context>
    <name>KeyedCarry</name>
    <message>
        <source>&apos;%1&apos; in record %2, field &apos;%3&apos;</source>
        <translation>&apos;%1&apos; nel record %2, campo &apos;%3&apos;</translation>
    </message>
    <message>
        <source>Make these changes on the left?</source>
        <translation>Fare queste modifiche a sinistra?</translation>
    </message>
    <message>
        <source>Make these changes on the right?</source>
        <translation>Fare queste modifiche a destra?</translation>
    </message>
    <message>
        <source>Values changed: %1, records added: %2, removed: %3.</source>
        <translation>Valori modificati: %1, record aggiunti: %2, rimossi: %3.</translation>
    </message>
    <message>
        <source>and %1 more.</source>
        <translation>e altri %1.</translation>
    </message>
    <message>
        <source>One value would not stay what it is: %1.</source>
        <translation>Un valore non resterebbe quello che è: %1.</translation>
    </message>
    <message>
        <source>%1 values would not stay what they are, the first is %2.</source>
        <translation>%1 valori non resterebbero quelli che sono, il primo è %2.</translation>
    </message>
    <message>
        <source>Carry these values too? With No they are left out.</source>
        <translation>Trasferire anche questi valori? Con No si tralasciano.</translation>
    </message>
    <message>
        <source>Values changed: %1, records added: %2, removed: %3</source>
        <translation>Valori modificati: %1, record aggiunti: %2, rimossi: %3</translation>
    </message>
    <message>
        <source>Changes by key carried to %1</source>
        <translation>Modifiche per chiave trasferite a %1</translation>
    </message>
    <message>
        <source>The added records go without these fields, which the other side lacks: %1.</source>
        <translation>I record aggiunti sono senza questi campi, che l'altro lato non ha: %1.</translation>
    </message>
</context>
<context>
    <name>ModeCommands</name>
    <message>
        <source>&amp;One Database</source>
        <translation>&amp;Un database</translation>
    </message>
    <message>
        <source>&amp;Two Databases</source>
        <translation>&amp;Due database</translation>
    </message>
    <message>
        <source>Compare &amp;Again</source>
        <translation>Confronta di &amp;nuovo</translation>
    </message>
    <message>
        <source>Other &amp;Pane</source>
        <translation>Altro &amp;pannello</translation>
    </message>
</context>
<context>
    <name>OnlyDifferences</name>
    <message>
        <source>Not while only differences are shown: turn off Mode &gt; Only Differences first</source>
        <translation>Non mentre si mostrano solo le differenze: prima spegnere Modo &gt; Solo differenze</translation>
    </message>
</context>
<context>
    <name>OpenCommand</name>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Apri...</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was not found</source>
        <translation>&apos;%1&apos; non è stato trovato</translation>
    </message>
    <message>
        <source>Database &apos;%1&apos; has changes that are not saved.<byte value="xd"/>
Reload it and drop them?</source>
        <translation>Il database &apos;%1&apos; ha modifiche non salvate.<byte value="xd"/>
Ricaricarlo e lasciarle cadere?</translation>
    </message>
    <message>
        <source>Can&apos;t load &apos;%1&apos;</source>
        <translation>Impossibile caricare &apos;%1&apos;</translation>
    </message>
    <message>
        <source>File DDB,WDB,UDB,SDB,IDB</source>
        <translation>File DDB,WDB,UDB,SDB,IDB</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Password:</translation>
    </message>
    <message>
        <source>Input password</source>
        <translation>Inserire la password</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was not found.<byte value="xd"/>
Take it off the recent files?</source>
        <translation>&apos;%1&apos; non è stato trovato.<byte value="xd"/>
Toglierlo dai file recenti?</translation>
    </message>
    <message>
        <source>Database &apos;%1&apos; has changes that are not saved.<byte value="xd"/>
Save them before another file takes its place?</source>
        <translation>Il database &apos;%1&apos; ha modifiche non salvate.<byte value="xd"/>
Salvarle prima che un altro file prenda il suo posto?</translation>
    </message>
    <message>
        <source>This side has nothing: &apos;%1&apos; is empty.</source>
        <translation>Qui non c&apos;è nulla: &apos;%1&apos; è vuoto.</translation>
    </message>
</context>
<context>
    <name>PasteAll</name>
    <message>
        <source>Paste A&amp;ll</source>
        <translation>Incolla t&amp;utto</translation>
    </message>
    <message>
        <source>The block needs 1 record more. Add it?</source>
        <translation>Il blocco ha bisogno di 1 record in più. Aggiungerlo?</translation>
    </message>
    <message>
        <source>The block needs %1 records more. Add them?</source>
        <translation>Il blocco ha bisogno di %1 record in più. Aggiungerli?</translation>
    </message>
    <message>
        <source>Paste All</source>
        <translation>Incolla tutto</translation>
    </message>
    <message>
        <source>Of the pasted values %1</source>
        <translation>Dei valori incollati %1</translation>
    </message>
    <message>
        <source>1 pasted value had no place in the table (%1)</source>
        <translation>1 valore incollato non ha trovato posto nella tabella (%1)</translation>
    </message>
    <message>
        <source>%1 pasted values had no place in the table (first: %2)</source>
        <translation>%1 valori incollati non hanno trovato posto nella tabella (il primo: %2)</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Left</source>
        <translation>Sinistra</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Destra</translation>
    </message>
    <message>
        <source>Left pane</source>
        <translation>Pannello sinistro</translation>
    </message>
    <message>
        <source>Right pane</source>
        <translation>Pannello destro</translation>
    </message>
    <message>
        <source>Left file name</source>
        <translation>Nome del file a sinistra</translation>
    </message>
    <message>
        <source>Right file name</source>
        <translation>Nome del file a destra</translation>
    </message>
    <message>
        <source>Filter of left tables</source>
        <translation>Filtro delle tabelle a sinistra</translation>
    </message>
    <message>
        <source>Filter of right tables</source>
        <translation>Filtro delle tabelle a destra</translation>
    </message>
    <message>
        <source>Tables whose name holds...</source>
        <translation>Tabelle il cui nome contiene...</translation>
    </message>
    <message>
        <source>Left tables</source>
        <translation>Tabelle a sinistra</translation>
    </message>
    <message>
        <source>Right tables</source>
        <translation>Tabelle a destra</translation>
    </message>
    <message>
        <source>Left table</source>
        <translation>Tabella a sinistra</translation>
    </message>
    <message>
        <source>Right table</source>
        <translation>Tabella a destra</translation>
    </message>
    <message>
        <source>Left cell editor</source>
        <translation>Modifica di cella a sinistra</translation>
    </message>
    <message>
        <source>Right cell editor</source>
        <translation>Modifica di cella a destra</translation>
    </message>
    <message>
        <source>Border below left tables</source>
        <translation>Bordo sotto le tabelle a sinistra</translation>
    </message>
    <message>
        <source>Border below right tables</source>
        <translation>Bordo sotto le tabelle a destra</translation>
    </message>
    <message>
        <source>No database is open here.
Open one (Ctrl+O), or drop a file here.</source>
        <translation>Qui non è aperto nessun database.
Aprirne uno (Ctrl+O) o trascinare qui un file.</translation>
    </message>
    <message>
        <source>Left pane: %1</source>
        <translation>Pannello sinistro: %1</translation>
    </message>
    <message>
        <source>Right pane: %1</source>
        <translation>Pannello destro: %1</translation>
    </message>
    <message>
        <source>Progress of the comparison</source>
        <translation>Avanzamento del confronto</translation>
    </message>
    <message>
        <source>None Yet</source>
        <translation>Ancora nessuno</translation>
    </message>
    <message>
        <source>Can&apos;t assign new file name</source>
        <translation>Impossibile assegnare il nuovo nome di file</translation>
    </message>
    <message>
        <source>New Database</source>
        <translation>Nuovo database</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is open. Close it before making a new database of that name.</source>
        <translation>&apos;%1&apos; è aperto. Chiuderlo prima di creare un nuovo database con quel nome.</translation>
    </message>
    <message>
        <source>&amp;Keys</source>
        <translation>&amp;Tasti</translation>
    </message>
    <message>
        <source>A&amp;bout</source>
        <translation>&amp;Informazioni</translation>
    </message>
    <message>
        <source>Edits and compares small typed table databases.
MIT license.</source>
        <translation>Modifica e confronta piccoli database di tabelle tipizzate.
Licenza MIT.</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>Informazioni su %1</translation>
    </message>
    <message>
        <source>User &amp;Guide</source>
        <translation>&amp;Guida per l&apos;utente</translation>
    </message>
    <message>
        <source>The database to open in the left pane.</source>
        <translation>Il database da aprire nel pannello sinistro.</translation>
    </message>
    <message>
        <source>The database to open beside it, in the right pane.</source>
        <translation>Il database da aprire accanto, nel pannello destro.</translation>
    </message>
    <message>
        <source>Show two panes, and ask for each file that is not named.</source>
        <translation>Mostra due riquadri e chiede ogni file che non è indicato.</translation>
    </message>
    <message>
        <source>--compare asks for files, and with --picture nobody is there to answer.</source>
        <translation>--compare chiede dei file, e con --picture nessuno può rispondere.</translation>
    </message>
    <message>
        <source>The window&apos;s language: %1.</source>
        <translation>La lingua della finestra: %1.</translation>
    </message>
    <message>
        <source>Load the file, write a picture of the window and end.</source>
        <translation>Carica il file, scrive un&apos;immagine della finestra e termina.</translation>
    </message>
    <message>
        <source>Edits and compares QIR databases.</source>
        <translation>Modifica e confronta database QIR.</translation>
    </message>
    <message>
        <source>--language takes one of these: %1.</source>
        <translation>--language prende una di queste: %1.</translation>
    </message>
    <message>
        <source>The left pane takes one file: --left and &apos;%1&apos; are two.</source>
        <translation>Il pannello sinistro prende un solo file: --left e &apos;%1&apos; sono due.</translation>
    </message>
    <message>
        <source>--%1 takes one file.</source>
        <translation>--%1 prende un solo file.</translation>
    </message>
    <message>
        <source>qir-editor --help lists the options.</source>
        <translation>qir-editor --help elenca le opzioni.</translation>
    </message>
    <message>
        <source>no display to open the window on:</source>
        <translation>nessuno schermo su cui aprire la finestra:</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Modifica</translation>
    </message>
    <message>
        <source>&amp;Mode</source>
        <translation>M&amp;odo</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Visualizza</translation>
    </message>
    <message>
        <source>&amp;Tables</source>
        <translation>&amp;Tabelle</translation>
    </message>
    <message>
        <source>Fie&amp;lds</source>
        <translation>&amp;Campi</translation>
    </message>
    <message>
        <source>&amp;Records</source>
        <translation>&amp;Record</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Aiuto</translation>
    </message>
    <message>
        <source>&amp;Colours</source>
        <translation>&amp;Colori</translation>
    </message>
    <message>
        <source>Change &amp;Password...</source>
        <translation>Cambia &amp;password...</translation>
    </message>
    <message>
        <source>Current password:</source>
        <translation>Password attuale:</translation>
    </message>
    <message>
        <source>New password:</source>
        <translation>Nuova password:</translation>
    </message>
    <message>
        <source>%1: the picture cannot be written</source>
        <translation>%1: l&apos;immagine non può essere scritta</translation>
    </message>
    <message>
        <source>The editor opens one file from its command line, and these are %1:
%2
File &gt; Open opens them one by one.</source>
        <translation>L&apos;editor apre un file dalla riga di comando, e questi sono %1:
%2
File &gt; Apri li apre uno alla volta.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was not found</source>
        <translation>&apos;%1&apos; non è stato trovato</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Repor&amp;t...</source>
        <translation>Rapp&amp;orto...</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>Rapporto</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pagine</translation>
    </message>
    <message>
        <source>%1: it is an open database</source>
        <translation>%1: è un database aperto</translation>
    </message>
    <message>
        <source>&apos;%1&apos; would replace &apos;%2&apos;, which is not the name chosen</source>
        <translation>&apos;%1&apos; sostituirebbe &apos;%2&apos;, che non è il nome scelto</translation>
    </message>
    <message>
        <source>QIR Database Editor</source>
        <translation>QIR Database Editor</translation>
    </message>
    <message>
        <source>Device Data Files(*.DDB)|*.DDB|Display Data Files(*.WDB)|*.WDB|User Data Files(*.UDB)|*.UDB|User Info Files(*.IDB)|*.IDB|Settings Data Files(*.SDB)|*.SDB</source>
        <translation>File di dati del dispositivo(*.DDB)|*.DDB|File di dati del display(*.WDB)|*.WDB|File di dati degli utenti(*.UDB)|*.UDB|File di informazioni sugli utenti(*.IDB)|*.IDB|File di dati delle impostazioni(*.SDB)|*.SDB</translation>
    </message>
    <message>
        <source>Database &apos;%1&apos; has changed.<byte value="xd"/>
Do you want to save the changes?</source>
        <translation>Il database &apos;%1&apos; è cambiato.<byte value="xd"/>
Salvare le modifiche?</translation>
    </message>
    <message>
        <source>Checking the password of &apos;%1&apos;...</source>
        <translation>Verifica della password di &apos;%1&apos;...</translation>
    </message>
    <message>
        <source>&apos;%1&apos; would reach &apos;%2&apos; instead of the chosen file</source>
        <translation>&apos;%1&apos; raggiungerebbe &apos;%2&apos; invece del file scelto</translation>
    </message>
    <message>
        <source>Text of the cell</source>
        <translation>Testo della cella</translation>
    </message>
    <message>
        <source>The selected table could not be loaded.</source>
        <translation>La tabella selezionata non ha potuto essere caricata.</translation>
    </message>
    <message>
        <source>Table &apos;%1&apos; is not loaded whole: %2</source>
        <translation>La tabella &apos;%1&apos; non è caricata per intero: %2</translation>
    </message>
    <message>
        <source>Edit of %1.%2</source>
        <translation>Modifica di %1.%2</translation>
    </message>
    <message>
        <source>&amp;Fit Columns</source>
        <translation>&amp;Adatta colonne</translation>
    </message>
    <message>
        <source>Re&amp;move Record %1</source>
        <translation>Ri&amp;muovi il record %1</translation>
    </message>
    <message>
        <source>Re&amp;move Record</source>
        <translation>Ri&amp;muovi il record</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabella</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Record</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Campo</translation>
    </message>
    <message>
        <source>Cells</source>
        <translation>Celle</translation>
    </message>
    <message>
        <source>Menus</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>&amp;Guide</source>
        <translation>&amp;Guida</translation>
    </message>
    <message>
        <source>Qt %1. Help &gt; Guide (F1) opens the guide.</source>
        <translation>Qt %1. Aiuto &gt; Guida (F1) apre la guida.</translation>
    </message>
</context>
<context>
    <name>RecordCommands</name>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Aggiungi</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>Ri&amp;muovi</translation>
    </message>
    <message>
        <source>Re&amp;move Record</source>
        <translation>Ri&amp;muovi il record</translation>
    </message>
    <message>
        <source>Adding a record to %1</source>
        <translation>Aggiunta di un record a %1</translation>
    </message>
    <message>
        <source>No selected Record</source>
        <translation>Nessun record selezionato</translation>
    </message>
    <message>
        <source>Removing record %1 of %2</source>
        <translation>Rimozione del record %1 di %2</translation>
    </message>
</context>
<context>
    <name>Replacement</name>
    <message>
        <source>%1, record %2, %3: &quot;%4&quot; is stored as &quot;%5&quot;</source>
        <translation>%1, record %2, %3: &quot;%4&quot; è memorizzato come &quot;%5&quot;</translation>
    </message>
    <message>
        <source>%1 of %2 values would not be stored as they are written:</source>
        <translation>%1 di %2 valori non sarebbero memorizzati come sono scritti:</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>e altri %1</translation>
    </message>
    <message>
        <source>Replace all the same?</source>
        <translation>Sostituire lo stesso?</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Sostituzione</translation>
    </message>
    <message>
        <source>Nothing was replaced</source>
        <translation>Nulla è stato sostituito</translation>
    </message>
    <message>
        <source>1 cell was replaced</source>
        <translation>1 cella è stata sostituita</translation>
    </message>
    <message>
        <source>%1 cells were replaced</source>
        <translation>%1 celle sono state sostituite</translation>
    </message>
</context>
<context>
    <name>SaveCommands</name>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Salva</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Salva con no&amp;me...</translation>
    </message>
    <message>
        <source>Can&apos;t assign new file name</source>
        <translation>Impossibile assegnare il nuovo nome di file</translation>
    </message>
    <message>
        <source>File DDB,WDB,UDB,SDB,IDB</source>
        <translation>File DDB,WDB,UDB,SDB,IDB</translation>
    </message>
</context>
<context>
    <name>Sorting</name>
    <message>
        <source>&amp;Sort by This Field</source>
        <translation>&amp;Ordina per questo campo</translation>
    </message>
    <message>
        <source>Sort by %1</source>
        <translation>Ordinamento per %1</translation>
    </message>
</context>
<context>
    <name>StatusState</name>
    <message>
        <source>missing here</source>
        <translation>manca qui</translation>
    </message>
    <message>
        <source>record %1 of %2</source>
        <translation>record %1 di %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>1 table differs</source>
        <translation>1 tabella diversa</translation>
    </message>
    <message>
        <source>%1 tables differ</source>
        <translation>%1 tabelle diverse</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>modificato</translation>
    </message>
    <message>
        <source>%1 and %2 records</source>
        <translation>%1 e %2 record</translation>
    </message>
    <message>
        <source>1 cell here</source>
        <translation>1 cella qui</translation>
    </message>
    <message>
        <source>%1 cells here</source>
        <translation>%1 celle qui</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>da %1 a %2</translation>
    </message>
    <message>
        <source>no differences to show</source>
        <translation>nessuna differenza da mostrare</translation>
    </message>
    <message>
        <source>%1 shown</source>
        <translation>%1 mostrati</translation>
    </message>
    <message>
        <source>0 or 1</source>
        <translation>0 o 1</translation>
    </message>
    <message>
        <source>%1 of %2 characters</source>
        <translation>%1 di %2 caratteri</translation>
    </message>
</context>
<context>
    <name>StoredMarks</name>
    <message>
        <source>stored: %1</source>
        <translation>memorizzato: %1</translation>
    </message>
</context>
<context>
    <name>StoredValues</name>
    <message>
        <source>The field has a type that there is none of.</source>
        <translation>Il campo ha un tipo che non esiste.</translation>
    </message>
</context>
<context>
    <name>TableCommands</name>
    <message>
        <source>&amp;Add...</source>
        <translation>&amp;Aggiungi...</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Rinomina...</translation>
    </message>
    <message>
        <source>Re&amp;move...</source>
        <translation>Ri&amp;muovi...</translation>
    </message>
    <message>
        <source>New table name</source>
        <translation>Nome della nuova tabella</translation>
    </message>
    <message>
        <source>Table: &apos;%1&apos; already exists</source>
        <translation>La tabella &apos;%1&apos; esiste già</translation>
    </message>
    <message>
        <source>Adding table %1</source>
        <translation>Aggiunta della tabella %1</translation>
    </message>
    <message>
        <source>Table&apos;s new name (%1)</source>
        <translation>Nuovo nome della tabella (%1)</translation>
    </message>
    <message>
        <source>Renaming table %1</source>
        <translation>Nuovo nome della tabella %1</translation>
    </message>
    <message>
        <source>Do you want to remove table: &apos;%1&apos; ?</source>
        <translation>Rimuovere la tabella &apos;%1&apos;?</translation>
    </message>
    <message>
        <source>Removing table %1</source>
        <translation>Rimozione della tabella %1</translation>
    </message>
</context>
<context>
    <name>UndoCommands</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annulla</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Ripristina</translation>
    </message>
    <message>
        <source>&amp;History...</source>
        <translation>Crono&amp;logia...</translation>
    </message>
    <message>
        <source>Re&amp;vert to Saved...</source>
        <translation>&amp;Torna al salvato...</translation>
    </message>
    <message>
        <source>&amp;Undo %1</source>
        <translation>&amp;Annulla: %1</translation>
    </message>
    <message>
        <source>&amp;Redo %1</source>
        <translation>&amp;Ripristina: %1</translation>
    </message>
    <message>
        <source>Do you want to go back to what is saved of &apos;%1&apos; ?</source>
        <translation>Tornare a ciò che è salvato di &apos;%1&apos;?</translation>
    </message>
    <message>
        <source>Revert to Saved</source>
        <translation>Torna al salvato</translation>
    </message>
</context>
<context>
    <name>qir::CellTextCommand</name>
    <message>
        <source>Record %1, %2</source>
        <translation>Record %1, %2</translation>
    </message>
</context>
<context>
    <name>qir::Colours</name>
    <message>
        <source>&amp;System</source>
        <translation>&amp;Sistema</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Chiaro</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>Sc&amp;uro</translation>
    </message>
</context>
<context>
    <name>qir::ConflictCommands</name>
    <message>
        <source>&amp;Merge Conflicts...</source>
        <translation>Conflitti di f&amp;usione...</translation>
    </message>
    <message>
        <source>No merge has left conflicts here: there is no &apos;%1&apos;.</source>
        <translation>Nessuna fusione ha lasciato conflitti qui: &apos;%1&apos; non esiste.</translation>
    </message>
    <message>
        <source>The database no longer has there what the list of conflicts tells.<byte value="xd"/>
Replace it?</source>
        <translation>Il database non ha più lì ciò che dice l&apos;elenco dei conflitti.<byte value="xd"/>
Sostituirlo?</translation>
    </message>
    <message>
        <source>In %1 places the database no longer has what the list of conflicts tells.<byte value="xd"/>
Replace it?</source>
        <translation>In %1 punti il database non ha più ciò che dice l&apos;elenco dei conflitti.<byte value="xd"/>
Sostituirlo?</translation>
    </message>
    <message>
        <source>Conflicts resolved</source>
        <translation>Conflitti risolti</translation>
    </message>
    <message>
        <source>Left, since the database no longer has what the list tells: %1.</source>
        <translation>Lasciati, perché il database non ha più ciò che dice l&apos;elenco: %1.</translation>
    </message>
    <message>
        <source>Left, since a field would not hold the value as it is: %1.</source>
        <translation>Lasciati, perché un campo non terrebbe il valore com&apos;è: %1.</translation>
    </message>
    <message>
        <source>Left, since the list does not tell enough to take that side: %1. Carry it over by hand, then choose Leave as It Is.</source>
        <translation>Lasciati, perché l&apos;elenco non dice abbastanza per prendere quel lato: %1. Trasferire a mano, poi scegliere Lascia com&apos;è.</translation>
    </message>
    <message>
        <source>All conflicts are resolved.<byte value="xd"/>
Save &apos;%1&apos; and remove &apos;%2&apos;?</source>
        <translation>Tutti i conflitti sono risolti.<byte value="xd"/>
Salvare &apos;%1&apos; e rimuovere &apos;%2&apos;?</translation>
    </message>
    <message>
        <source>All conflicts are resolved.<byte value="xd"/>
Remove &apos;%1&apos;?</source>
        <translation>Tutti i conflitti sono risolti.<byte value="xd"/>
Rimuovere &apos;%1&apos;?</translation>
    </message>
    <message>
        <source>it has changed since it was read; open the list again</source>
        <translation>è cambiato da quando è stato letto; riaprire l&apos;elenco</translation>
    </message>
</context>
<context>
    <name>qir::ConflictList</name>
    <message>
        <source>(nothing)</source>
        <translation>(nulla)</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabella</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Record</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Campo</translation>
    </message>
    <message>
        <source>Base</source>
        <translation>Base</translation>
    </message>
    <message>
        <source>Ours</source>
        <translation>Nostro</translation>
    </message>
    <message>
        <source>Theirs</source>
        <translation>Loro</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Stato</translation>
    </message>
    <message>
        <source>resolved: theirs</source>
        <translation>risolto: loro</translation>
    </message>
    <message>
        <source>resolved: ours</source>
        <translation>risolto: nostro</translation>
    </message>
    <message>
        <source>resolved: as it is</source>
        <translation>risolto: com&apos;è</translation>
    </message>
    <message>
        <source>open; the database has %1 now</source>
        <translation>aperto; il database ora ha %1</translation>
    </message>
    <message>
        <source>open; the database has another record now</source>
        <translation>aperto; il database ora ha un altro record</translation>
    </message>
    <message>
        <source>open; the database has no such place now</source>
        <translation>aperto; il database ora non ha questo punto</translation>
    </message>
    <message>
        <source>open; it is not clear which record is meant</source>
        <translation>aperto; non è chiaro quale record si intenda</translation>
    </message>
    <message>
        <source>open; only ours can be taken here</source>
        <translation>aperto; qui si può prendere solo il nostro</translation>
    </message>
    <message>
        <source>open</source>
        <translation>aperto</translation>
    </message>
</context>
<context>
    <name>qir::ConflictsWindow</name>
    <message>
        <source>Merge Conflicts</source>
        <translation>Conflitti di fusione</translation>
    </message>
    <message>
        <source>Conflicts</source>
        <translation>Conflitti</translation>
    </message>
    <message>
        <source>Take &amp;Ours</source>
        <translation>Prendi il &amp;nostro</translation>
    </message>
    <message>
        <source>Take &amp;Theirs</source>
        <translation>Prendi il &amp;loro</translation>
    </message>
    <message>
        <source>Leave as It &amp;Is</source>
        <translation>Lascia com&apos;&amp;è</translation>
    </message>
    <message>
        <source>It was decided by hand: what stands there now is right</source>
        <translation>È stato deciso a mano: ciò che c&apos;è ora è giusto</translation>
    </message>
    <message>
        <source>&amp;Remove the List...</source>
        <translation>&amp;Rimuovi l&apos;elenco...</translation>
    </message>
    <message>
        <source>&amp;All Ours</source>
        <translation>&amp;Tutti nostri</translation>
    </message>
    <message>
        <source>A&amp;ll Theirs</source>
        <translation>Tutti l&amp;oro</translation>
    </message>
    <message>
        <source>%1 of %2 conflicts are resolved.</source>
        <translation>%1 conflitti su %2 sono risolti.</translation>
    </message>
</context>
<context>
    <name>qir::DifferenceStrip</name>
    <message>
        <source>Left differences</source>
        <translation>Differenze a sinistra</translation>
    </message>
    <message>
        <source>Right differences</source>
        <translation>Differenze a destra</translation>
    </message>
    <message>
        <source>%1 of %2 records differ</source>
        <translation>%1 di %2 record diversi</translation>
    </message>
</context>
<context>
    <name>qir::DifferencesSummary</name>
    <message>
        <source>&amp;Summary of Differences</source>
        <translation>Riepilo&amp;go delle differenze</translation>
    </message>
    <message>
        <source>Summary of Differences</source>
        <translation>Riepilogo delle differenze</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtro</translation>
    </message>
    <message>
        <source>Tables and how they differ</source>
        <translation>Le tabelle e come differiscono</translation>
    </message>
    <message>
        <source>The tables could not be read. Choose the summary again to try once more.</source>
        <translation>Impossibile leggere le tabelle. Scegliere di nuovo il riepilogo per riprovare.</translation>
    </message>
</context>
<context>
    <name>qir::DtbEditor</name>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Esci</translation>
    </message>
</context>
<context>
    <name>qir::FileSigns</name>
    <message>
        <source>changes not saved</source>
        <translation>modifiche non salvate</translation>
    </message>
    <message>
        <source>protected by a password</source>
        <translation>protetto da password</translation>
    </message>
    <message>
        <source>read-only</source>
        <translation>sola lettura</translation>
    </message>
    <message>
        <source>%1, changed %2</source>
        <translation>%1, modificato %2</translation>
    </message>
    <message>
        <source>Not on disk</source>
        <translation>Non su disco</translation>
    </message>
    <message>
        <source>Changes are not saved</source>
        <translation>Le modifiche non sono salvate</translation>
    </message>
    <message>
        <source>Protected by a password</source>
        <translation>Protetto da password</translation>
    </message>
    <message>
        <source>Read-only</source>
        <translation>Sola lettura</translation>
    </message>
</context>
<context>
    <name>qir::FilesAtHand</name>
    <message>
        <source>&amp;New Database...</source>
        <translation>&amp;Nuovo database...</translation>
    </message>
    <message>
        <source>&amp;Forget...</source>
        <translation>&amp;Dimentica...</translation>
    </message>
    <message>
        <source>&amp;Desktop&apos;s File Dialogs</source>
        <translation>&amp;Finestre dei file del desktop</translation>
    </message>
    <message>
        <source>&amp;Recent Files</source>
        <translation>File &amp;recenti</translation>
    </message>
    <message>
        <source>Recent Pa&amp;irs</source>
        <translation>&amp;Coppie recenti</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <translation>%1 e %2</translation>
    </message>
    <message>
        <source>&amp;Keep Names of Protected Files</source>
        <translation>&amp;Conserva i nomi dei file protetti</translation>
    </message>
    <message>
        <source>Forget recent files and pairs, key fields, the folder used last and the window&apos;s place?</source>
        <translation>Dimenticare file e coppie recenti, campi chiave, l&apos;ultima cartella usata e il posto della finestra?</translation>
    </message>
    <message>
        <source>This cannot be kept: what is remembered cannot be written. It holds until the end of the program.</source>
        <translation>Questo non può essere conservato: lo stato ricordato non si può scrivere. Vale fino alla fine del programma.</translation>
    </message>
</context>
<context>
    <name>qir::FindBar</name>
    <message>
        <source>Find and replace</source>
        <translation>Trova e sostituisci</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Testo da trovare</translation>
    </message>
    <message>
        <source>Text to replace it with</source>
        <translation>Testo con cui sostituirlo</translation>
    </message>
    <message>
        <source>Clo&amp;se</source>
        <translation>C&amp;hiudi</translation>
    </message>
    <message>
        <source>Cells found</source>
        <translation>Celle trovate</translation>
    </message>
    <message>
        <source>Match &amp;case</source>
        <translation>Maiuscole/&amp;minuscole</translation>
    </message>
    <message>
        <source>&amp;Whole cell</source>
        <translation>Cella &amp;intera</translation>
    </message>
    <message>
        <source>Regular e&amp;xpression</source>
        <translation>Espressione rego&amp;lare</translation>
    </message>
    <message>
        <source>All ta&amp;bles</source>
        <translation>Tutte le ta&amp;belle</translation>
    </message>
    <message>
        <source>B&amp;oth panes</source>
        <translation>Entrambi i &amp;pannelli</translation>
    </message>
    <message>
        <source>Fi&amp;nd:</source>
        <translation>&amp;Trova:</translation>
    </message>
    <message>
        <source>Replace w&amp;ith:</source>
        <translation>Sostituisci co&amp;n:</translation>
    </message>
    <message>
        <source>Re&amp;place</source>
        <translation>Sostit&amp;uisci</translation>
    </message>
    <message>
        <source>Replace &amp;All</source>
        <translation>Sostituisci t&amp;utto</translation>
    </message>
</context>
<context>
    <name>qir::FindCommands</name>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Trova...</translation>
    </message>
    <message>
        <source>Find &amp;Next</source>
        <translation>Trova &amp;successivo</translation>
    </message>
    <message>
        <source>Find Pre&amp;vious</source>
        <translation>Trova &amp;precedente</translation>
    </message>
    <message>
        <source>R&amp;eplace...</source>
        <translation>Sostituis&amp;ci...</translation>
    </message>
    <message>
        <source>Searching... Escape stops it</source>
        <translation>Ricerca in corso... Esc la ferma</translation>
    </message>
    <message>
        <source>Stopped: not all cells were looked at</source>
        <translation>Fermata: non tutte le celle sono state guardate</translation>
    </message>
    <message>
        <source>The first %1 are listed</source>
        <translation>Sono elencate le prime %1</translation>
    </message>
    <message>
        <source>1 cell</source>
        <translation>1 cella</translation>
    </message>
    <message>
        <source>%1 cells</source>
        <translation>%1 celle</translation>
    </message>
    <message>
        <source>That cell has changed: searching again</source>
        <translation>Quella cella è cambiata: nuova ricerca</translation>
    </message>
</context>
<context>
    <name>qir::GridModel</name>
    <message>
        <source>empty</source>
        <translation>vuoto</translation>
    </message>
    <message>
        <source>record %1</source>
        <translation>record %1</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>diverso</translation>
    </message>
    <message>
        <source>not as stored</source>
        <translation>non come memorizzato</translation>
    </message>
    <message>
        <source>record %1, differs</source>
        <translation>record %1, diverso</translation>
    </message>
    <message>
        <source>Record %1 differs</source>
        <translation>Il record %1 è diverso</translation>
    </message>
</context>
<context>
    <name>qir::GuideWindow</name>
    <message>
        <source>User Guide</source>
        <translation>Guida per l&apos;utente</translation>
    </message>
    <message>
        <source>User guide</source>
        <translation>Guida per l&apos;utente</translation>
    </message>
    <message>
        <source>Search the guide</source>
        <translation>Cerca nella guida</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Cerca</translation>
    </message>
    <message>
        <source>Contents of the guide</source>
        <translation>Indice della guida</translation>
    </message>
</context>
<context>
    <name>qir::HistoryWindow</name>
    <message>
        <source>Before the oldest step that is kept</source>
        <translation>Prima del più vecchio passo conservato</translation>
    </message>
    <message>
        <source>As opened</source>
        <translation>Come aperto</translation>
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
        <translation>Cronologia</translation>
    </message>
    <message>
        <source>Steps</source>
        <translation>Passi</translation>
    </message>
    <message>
        <source>&amp;Go There</source>
        <translation>&amp;Vai lì</translation>
    </message>
</context>
<context>
    <name>qir::HitList</name>
    <message>
        <source>Left</source>
        <translation>Sinistra</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Destra</translation>
    </message>
    <message>
        <source>Pane</source>
        <translation>Pannello</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabella</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Record</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Campo</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Testo</translation>
    </message>
</context>
<context>
    <name>qir::KeptWindow</name>
    <message>
        <source>Another program&apos;s version</source>
        <translation>Versione di un altro programma</translation>
    </message>
    <message>
        <source>Could not be saved</source>
        <translation>Non ha potuto essere salvato</translation>
    </message>
    <message>
        <source>Replaced by a restored one</source>
        <translation>Sostituita da una ripristinata</translation>
    </message>
    <message>
        <source>Changes not saved</source>
        <translation>Modifiche non salvate</translation>
    </message>
    <message>
        <source>A protected file</source>
        <translation>Un file protetto</translation>
    </message>
    <message>
        <source>No versions are kept.</source>
        <translation>Nessuna versione è conservata.</translation>
    </message>
    <message>
        <source>Kept Versions</source>
        <translation>Versioni conservate</translation>
    </message>
    <message>
        <source>Kept versions</source>
        <translation>Versioni conservate</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Ora</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
    <message>
        <source>What it is</source>
        <translation>Che cos&apos;è</translation>
    </message>
    <message>
        <source>Where it stands</source>
        <translation>Dove si trova</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Apri</translation>
    </message>
    <message>
        <source>&amp;Compare</source>
        <translation>&amp;Confronta</translation>
    </message>
    <message>
        <source>Opens it in the other pane, beside the file as it is now</source>
        <translation>La apre nell&apos;altro pannello, accanto al file com&apos;è ora</translation>
    </message>
    <message>
        <source>&amp;Remove...</source>
        <translation>&amp;Rimuovi...</translation>
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
        <translation>Chiave</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Modifica</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Campo</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Sinistra</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Destra</translation>
    </message>
    <message>
        <source>%1 times</source>
        <translation>%1 volte</translation>
    </message>
    <message>
        <source>field only right</source>
        <translation>campo solo a destra</translation>
    </message>
    <message>
        <source>field only left</source>
        <translation>campo solo a sinistra</translation>
    </message>
    <message>
        <source>removed</source>
        <translation>rimosso</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>modificato</translation>
    </message>
    <message>
        <source>added</source>
        <translation>aggiunto</translation>
    </message>
    <message>
        <source>moved</source>
        <translation>spostato</translation>
    </message>
    <message>
        <source>record %1</source>
        <translation>record %1</translation>
    </message>
    <message>
        <source>%1: %2 becomes %3, not %4</source>
        <translation>%1: %2 diventa %3, non %4</translation>
    </message>
    <message>
        <source>%1: the record is removed</source>
        <translation>%1: il record è rimosso</translation>
    </message>
    <message>
        <source>%1: the record is added</source>
        <translation>%1: il record è aggiunto</translation>
    </message>
</context>
<context>
    <name>qir::KeyedCommands</name>
    <message>
        <source>Differences by &amp;Key...</source>
        <translation>Differenze per &amp;chiave...</translation>
    </message>
    <message>
        <source>Select a table that both databases have.</source>
        <translation>Selezionare una tabella che hanno entrambi i database.</translation>
    </message>
</context>
<context>
    <name>qir::KeyedOptions</name>
    <message>
        <source>Key fields</source>
        <translation>Campi chiave</translation>
    </message>
    <message>
        <source>Fields that are not compared</source>
        <translation>Campi che non si confrontano</translation>
    </message>
    <message>
        <source>&amp;Not compared:</source>
        <translation>&amp;Non confrontati:</translation>
    </message>
    <message>
        <source>How far numbers may be apart</source>
        <translation>Quanto possono distare i numeri</translation>
    </message>
    <message>
        <source>N&amp;umbers up to so far apart:</source>
        <translation>N&amp;umeri distanti al più:</translation>
    </message>
    <message>
        <source>&amp;Case does not count</source>
        <translation>&amp;Maiuscole e minuscole non contano</translation>
    </message>
    <message>
        <source>&amp;Blanks do not count</source>
        <translation>Gli spa&amp;zi non contano</translation>
    </message>
    <message>
        <source>Key of %1:</source>
        <translation>Chiave di %1:</translation>
    </message>
</context>
<context>
    <name>qir::KeyedWindow</name>
    <message>
        <source>Differences by Key</source>
        <translation>Differenze per chiave</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Ferma</translation>
    </message>
    <message>
        <source>Compare &amp;Again</source>
        <translation>Confronta di &amp;nuovo</translation>
    </message>
    <message>
        <source>Search in the changes</source>
        <translation>Cerca nelle modifiche</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Cerca</translation>
    </message>
    <message>
        <source>Which changes are shown</source>
        <translation>Quali modifiche sono mostrate</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Tutti</translation>
    </message>
    <message>
        <source>Added</source>
        <translation>Aggiunti</translation>
    </message>
    <message>
        <source>Removed</source>
        <translation>Rimossi</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Modificati</translation>
    </message>
    <message>
        <source>Moved</source>
        <translation>Spostati</translation>
    </message>
    <message>
        <source>Fields and doubles</source>
        <translation>Campi e doppioni</translation>
    </message>
    <message>
        <source>Changes by key</source>
        <translation>Modifiche per chiave</translation>
    </message>
    <message>
        <source>Stopped. Check the fields of the key.</source>
        <translation>Fermato. Controllare i campi della chiave.</translation>
    </message>
    <message>
        <source>The tables have changed since they were compared.</source>
        <translation>Le tabelle sono cambiate dopo il confronto.</translation>
    </message>
    <message>
        <source>The tables have no field in common.</source>
        <translation>Le tabelle non hanno nessun campo in comune.</translation>
    </message>
    <message>
        <source>No field has values that are unique on both sides. Check the fields of the key.</source>
        <translation>Nessun campo ha valori unici su entrambi i lati. Controllare i campi della chiave.</translation>
    </message>
    <message>
        <source>Comparing...</source>
        <translation>Confronto in corso...</translation>
    </message>
    <message>
        <source>%1 added, %2 removed, %3 changed, %4 moved.</source>
        <translation>%1 aggiunti, %2 rimossi, %3 modificati, %4 spostati.</translation>
    </message>
    <message>
        <source>The key is not unique: on the left the records %1 and %2 have the same.</source>
        <translation>La chiave non è unica: a sinistra i record %1 e %2 hanno la stessa.</translation>
    </message>
    <message>
        <source>The key is not unique: on the right the records %1 and %2 have the same.</source>
        <translation>La chiave non è unica: a destra i record %1 e %2 hanno la stessa.</translation>
    </message>
    <message>
        <source>&amp;Tick all</source>
        <translation>&amp;Spunta tutto</translation>
    </message>
    <message>
        <source>Carry to the &amp;Left...</source>
        <translation>Trasferisci a &amp;sinistra...</translation>
    </message>
    <message>
        <source>Carry to the &amp;Right...</source>
        <translation>Trasferisci a &amp;destra...</translation>
    </message>
    <message>
        <source>Re&amp;port...</source>
        <translation>Ra&amp;pporto...</translation>
    </message>
    <message>
        <source>No field of the key is checked.</source>
        <translation>Nessun campo della chiave è selezionato.</translation>
    </message>
</context>
<context>
    <name>qir::NoticeBar</name>
    <message>
        <source>Show what is on disk now, at the same table and cell.</source>
        <translation>Mostra ciò che ora è su disco, alla stessa tabella e cella.</translation>
    </message>
    <message>
        <source>Go on with what is shown; the next save writes it over the file.</source>
        <translation>Continua con ciò che è mostrato; il prossimo salvataggio lo scrive sul file.</translation>
    </message>
    <message>
        <source>Open what is on disk now in the other pane.</source>
        <translation>Apre nell&apos;altro pannello ciò che ora è su disco.</translation>
    </message>
    <message>
        <source>Close this line. Nothing is decided by that.</source>
        <translation>Chiude questa riga. Con ciò non si decide nulla.</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Ricarica</translation>
    </message>
    <message>
        <source>Keep Mine</source>
        <translation>Tieni il mio</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Confronta</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Chiudi</translation>
    </message>
</context>
<context>
    <name>qir::OnlyDifferences</name>
    <message>
        <source>Only &amp;Differences</source>
        <translation>Solo d&amp;ifferenze</translation>
    </message>
    <message>
        <source>Tables that only one side has, or has records in, are shown whole</source>
        <translation>Le tabelle che ha un lato solo, o che hanno record da un lato solo, si mostrano intere</translation>
    </message>
    <message>
        <source>The tables are equal: there is nothing to show</source>
        <translation>Le tabelle sono uguali: non c&apos;è nulla da mostrare</translation>
    </message>
    <message>
        <source>%1 of %2 records differ</source>
        <translation>%1 di %2 record diversi</translation>
    </message>
</context>
<context>
    <name>qir::OutsideChanges</name>
    <message>
        <source>Notices</source>
        <translation>Avvisi</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not on disk any more.</source>
        <translation>&apos;%1&apos; non è più su disco.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be read any more.</source>
        <translation>&apos;%1&apos; non può più essere letto.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is back on disk as it was.</source>
        <translation>&apos;%1&apos; è di nuovo su disco com&apos;era.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is back on disk with other contents.</source>
        <translation>&apos;%1&apos; è di nuovo su disco con altro contenuto.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was changed by another program.</source>
        <translation>&apos;%1&apos; è stato modificato da un altro programma.</translation>
    </message>
</context>
<context>
    <name>qir::PasswordAids</name>
    <message>
        <source>Caps Lock is on.</source>
        <translation>Blocco maiuscole è attivo.</translation>
    </message>
    <message>
        <source>Hide what is typed</source>
        <translation>Nascondi ciò che si scrive</translation>
    </message>
    <message>
        <source>Show what is typed</source>
        <translation>Mostra ciò che si scrive</translation>
    </message>
</context>
<context>
    <name>qir::Progresso</name>
    <message>
        <source>Progress</source>
        <translation>Avanzamento</translation>
    </message>
</context>
<context>
    <name>qir::Room</name>
    <message>
        <source>&amp;Stretch Last Column</source>
        <translation>Allarga l&apos;&amp;ultima colonna</translation>
    </message>
    <message>
        <source>&amp;List Beside Table in Wide Windows</source>
        <translation>&amp;Elenco accanto alla tabella in finestre larghe</translation>
    </message>
</context>
<context>
    <name>qir::SummaryModel</name>
    <message>
        <source>other fields</source>
        <translation>altri campi</translation>
    </message>
    <message>
        <source>other types</source>
        <translation>altri tipi</translation>
    </message>
    <message>
        <source>only left</source>
        <translation>solo a sinistra</translation>
    </message>
    <message>
        <source>only right</source>
        <translation>solo a destra</translation>
    </message>
    <message>
        <source>equal</source>
        <translation>uguali</translation>
    </message>
    <message>
        <source>%1 and %2 records</source>
        <translation>%1 e %2 record</translation>
    </message>
    <message>
        <source>1 cell</source>
        <translation>1 cella</translation>
    </message>
    <message>
        <source>%1 cells</source>
        <translation>%1 celle</translation>
    </message>
    <message>
        <source>%1 in 1 record</source>
        <translation>%1 in 1 record</translation>
    </message>
    <message>
        <source>%1 in %2 records</source>
        <translation>%1 in %2 record</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabella</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Differenza</translation>
    </message>
    <message>
        <source>Left records</source>
        <translation>Record a sinistra</translation>
    </message>
    <message>
        <source>Right records</source>
        <translation>Record a destra</translation>
    </message>
    <message>
        <source>Fields</source>
        <translation>Campi</translation>
    </message>
</context>
<context>
    <name>qir::ToolBar</name>
    <message>
        <source>Tool &amp;Bar</source>
        <translation>&amp;Barra degli strumenti</translation>
    </message>
    <message>
        <source>Tool Bar</source>
        <translation>Barra degli strumenti</translation>
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
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Risposta</translation>
    </message>
</context>
<context>
    <name>qir::frmListaStringhePlain</name>
    <message>
        <source>Choices</source>
        <translation>Scelte</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
</context>
</TS>
