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
    <message>
        <source>1 is stored otherwise (%1)</source>
        <translation>1 è memorizzato diversamente (%1)</translation>
    </message>
    <message>
        <source>1 pasted value lay outside the selection (%1)</source>
        <translation>1 valore incollato era fuori della selezione (%1)</translation>
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
    <message>
        <source>The cells are equal</source>
        <translation>Le celle sono uguali</translation>
    </message>
    <message>
        <source>The record goes without these fields, which the other side lacks: %1.</source>
        <translation>Il record va senza questi campi, che l&apos;altro lato non ha: %1.</translation>
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
        <translation>I record aggiunti sono senza questi campi, che l&apos;altro lato non ha: %1.</translation>
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
    <message>
        <source>1 of %1 values would not be stored as it is written:</source>
        <translation>1 di %1 valori non sarebbe memorizzato come è scritto:</translation>
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
        <source>File DDB,WDB,UDB,SDB,IDB</source>
        <translation>File DDB,WDB,UDB,SDB,IDB</translation>
    </message>
    <message>
        <source>Nothing was saved: it is the other pane that has changed. F6, then Ctrl+S.</source>
        <translation>Non è stato salvato nulla: è cambiato l&apos;altro pannello. F6, poi Ctrl+S.</translation>
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
    <name>Storage</name>
    <message>
        <source>the disk is full</source>
        <translation>il disco è pieno</translation>
    </message>
    <message>
        <source>the disk quota is used up</source>
        <translation>lo spazio concesso sul disco è esaurito</translation>
    </message>
    <message>
        <source>the disk is read-only</source>
        <translation>il disco è di sola lettura</translation>
    </message>
    <message>
        <source>no permission</source>
        <translation>permesso negato</translation>
    </message>
    <message>
        <source>no such file or folder</source>
        <translation>il file o la cartella non esiste</translation>
    </message>
    <message>
        <source>a part of the path is not a folder</source>
        <translation>una parte del percorso non è una cartella</translation>
    </message>
    <message>
        <source>it is a folder</source>
        <translation>è una cartella</translation>
    </message>
    <message>
        <source>the name is already taken</source>
        <translation>il nome è già in uso</translation>
    </message>
    <message>
        <source>the disk reported an error</source>
        <translation>il disco ha segnalato un errore</translation>
    </message>
    <message>
        <source>the file would be larger than the disk or a limit of the system allows</source>
        <translation>il file sarebbe più grande di quanto il disco o un limite del sistema consente</translation>
    </message>
    <message>
        <source>the name is too long</source>
        <translation>il nome è troppo lungo</translation>
    </message>
    <message>
        <source>too many links lead to one another</source>
        <translation>troppi collegamenti portano l&apos;uno all&apos;altro</translation>
    </message>
    <message>
        <source>too many files are open</source>
        <translation>troppi file sono aperti</translation>
    </message>
    <message>
        <source>there is not enough memory</source>
        <translation>la memoria non basta</translation>
    </message>
    <message>
        <source>the call was interrupted again and again</source>
        <translation>la chiamata è stata interrotta più e più volte</translation>
    </message>
    <message>
        <source>it is in use</source>
        <translation>è in uso</translation>
    </message>
    <message>
        <source>it is gone from the server</source>
        <translation>non è più sul server</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>La memoria non basta.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; and &apos;%2&apos; in &apos;%3&apos; differ only in case</source>
        <translation>&apos;%1&apos; e &apos;%2&apos; in &apos;%3&apos; differiscono solo per maiuscole e minuscole</translation>
    </message>
    <message>
        <source>&apos;%1&apos; holds a character that no file name can hold</source>
        <translation>&apos;%1&apos; contiene un carattere che nessun nome di file può contenere</translation>
    </message>
    <message>
        <source>the argument &quot;%1&quot; is not UTF-8: such a name cannot be told from another one</source>
        <translation>l&apos;argomento &quot;%1&quot; non è UTF-8: un tale nome non si distingue da un altro</translation>
    </message>
    <message>
        <source>it belongs to another user</source>
        <translation>appartiene a un altro utente</translation>
    </message>
    <message>
        <source>other users may change it (its permissions must be private to you)</source>
        <translation>altri utenti possono modificarlo (i permessi devono essere solo i tuoi)</translation>
    </message>
    <message>
        <source>it is empty</source>
        <translation>è vuoto</translation>
    </message>
    <message>
        <source>it is a device, not a file</source>
        <translation>è un dispositivo, non un file</translation>
    </message>
    <message>
        <source>it cannot be opened: %1</source>
        <translation>non si può aprire: %1</translation>
    </message>
    <message>
        <source>it cannot be read: %1</source>
        <translation>non si può leggere: %1</translation>
    </message>
    <message>
        <source>it ends after %1 of %2 bytes</source>
        <translation>finisce dopo %1 di %2 byte</translation>
    </message>
    <message>
        <source>it ends after %1 bytes</source>
        <translation>finisce dopo %1 byte</translation>
    </message>
    <message>
        <source>it is damaged: %1 bytes follow its end</source>
        <translation>è danneggiato: %1 byte seguono la sua fine</translation>
    </message>
    <message>
        <source>it is damaged: part %1 of %2 does not match its checksum</source>
        <translation>è danneggiato: la parte %1 di %2 non corrisponde alla somma di controllo</translation>
    </message>
    <message>
        <source>it is damaged: %1</source>
        <translation>è danneggiato: %1</translation>
    </message>
    <message>
        <source>it is damaged</source>
        <translation>è danneggiato</translation>
    </message>
    <message>
        <source>its content is larger than is accepted (%1 bytes)</source>
        <translation>il suo contenuto è più grande di quanto si accetta (%1 byte)</translation>
    </message>
    <message>
        <source>it is protected and needs a password</source>
        <translation>è protetto e richiede una password</translation>
    </message>
    <message>
        <source>the password does not open it</source>
        <translation>la password non lo apre</translation>
    </message>
    <message>
        <source>its header is not the one that was written</source>
        <translation>la sua intestazione non è quella che è stata scritta</translation>
    </message>
    <message>
        <source>there is not enough memory to turn the password into a key (%1 MiB are needed)</source>
        <translation>la memoria non basta per ricavare una chiave dalla password (servono %1 MiB)</translation>
    </message>
    <message>
        <source>there is not enough memory to turn the password into a key</source>
        <translation>la memoria non basta per ricavare una chiave dalla password</translation>
    </message>
    <message>
        <source>it is not a database of this program</source>
        <translation>non è un database di questo programma</translation>
    </message>
    <message>
        <source>it was made by a newer version of this program (%1)</source>
        <translation>è stato fatto da una versione più recente di questo programma (%1)</translation>
    </message>
    <message>
        <source>it was made by a newer version of this program</source>
        <translation>è stato fatto da una versione più recente di questo programma</translation>
    </message>
    <message>
        <source>its header does not match its checksum</source>
        <translation>la sua intestazione non corrisponde alla somma di controllo</translation>
    </message>
    <message>
        <source>format %1.%2</source>
        <translation>formato %1.%2</translation>
    </message>
    <message>
        <source>there is no format 0</source>
        <translation>non esiste un formato 0</translation>
    </message>
    <message>
        <source>it needs a feature that this version does not have</source>
        <translation>ha bisogno di una funzione che questa versione non ha</translation>
    </message>
    <message>
        <source>it uses header bytes that this version does not know</source>
        <translation>usa byte dell&apos;intestazione che questa versione non conosce</translation>
    </message>
    <message>
        <source>its parts have a size that is not accepted</source>
        <translation>le sue parti hanno una dimensione che non si accetta</translation>
    </message>
    <message>
        <source>it is sealed in a way that this version does not know</source>
        <translation>è sigillato in un modo che questa versione non conosce</translation>
    </message>
    <message>
        <source>it says both that it is protected and that it is open</source>
        <translation>dice sia di essere protetto sia di essere aperto a tutti</translation>
    </message>
    <message>
        <source>it is open but has a password&apos;s traces</source>
        <translation>è aperto a tutti ma ha le tracce di una password</translation>
    </message>
    <message>
        <source>it has no identity</source>
        <translation>non ha un&apos;identità</translation>
    </message>
    <message>
        <source>its header&apos;s extensions have no end</source>
        <translation>le estensioni della sua intestazione non hanno fine</translation>
    </message>
    <message>
        <source>trying a password on it would take more time or memory than is accepted (%1 passes over %2 KiB)</source>
        <translation>provare una password richiederebbe più tempo o memoria di quanto si accetta (%1 passaggi su %2 KiB)</translation>
    </message>
    <message>
        <source>its tables take more memory than is allowed</source>
        <translation>le sue tabelle richiedono più memoria di quanta è concessa</translation>
    </message>
    <message>
        <source>a length in it reaches beyond its end</source>
        <translation>una lunghezza al suo interno va oltre la fine</translation>
    </message>
    <message>
        <source>bytes that must be zero are not</source>
        <translation>dei byte che devono essere zero non lo sono</translation>
    </message>
    <message>
        <source>a table has more than %1 records</source>
        <translation>una tabella ha più di %1 record</translation>
    </message>
    <message>
        <source>a table has more than %1 fields</source>
        <translation>una tabella ha più di %1 campi</translation>
    </message>
    <message>
        <source>a table without fields has records</source>
        <translation>una tabella senza campi ha dei record</translation>
    </message>
    <message>
        <source>a field has an unknown type</source>
        <translation>un campo ha un tipo sconosciuto</translation>
    </message>
    <message>
        <source>a field that is no text has a size</source>
        <translation>un campo che non è di testo ha una dimensione</translation>
    </message>
    <message>
        <source>two fields of the table &quot;%1&quot; have the same name &quot;%2&quot;</source>
        <translation>due campi della tabella &quot;%1&quot; hanno lo stesso nome &quot;%2&quot;</translation>
    </message>
    <message>
        <source>a table has bytes left over</source>
        <translation>a una tabella avanzano dei byte</translation>
    </message>
    <message>
        <source>a name is not in UTF-8</source>
        <translation>un nome non è in UTF-8</translation>
    </message>
    <message>
        <source>a name is longer than %1 characters</source>
        <translation>un nome è più lungo di %1 caratteri</translation>
    </message>
    <message>
        <source>a name is empty</source>
        <translation>un nome è vuoto</translation>
    </message>
    <message>
        <source>a section has flags that its type does not have</source>
        <translation>una sezione ha indicatori che il suo tipo non ha</translation>
    </message>
    <message>
        <source>there are bytes after its end</source>
        <translation>ci sono byte dopo la sua fine</translation>
    </message>
    <message>
        <source>a table stands after other sections</source>
        <translation>una tabella sta dopo altre sezioni</translation>
    </message>
    <message>
        <source>it has more than %1 tables</source>
        <translation>ha più di %1 tabelle</translation>
    </message>
    <message>
        <source>two tables have the same name &quot;%1&quot;</source>
        <translation>due tabelle hanno lo stesso nome &quot;%1&quot;</translation>
    </message>
    <message>
        <source>a bool is neither 0 nor 1</source>
        <translation>un valore booleano non è né 0 né 1</translation>
    </message>
    <message>
        <source>a number is not finite</source>
        <translation>un numero non è finito</translation>
    </message>
    <message>
        <source>a text is longer than its field</source>
        <translation>un testo è più lungo del suo campo</translation>
    </message>
    <message>
        <source>a text is not in UTF-8</source>
        <translation>un testo non è in UTF-8</translation>
    </message>
    <message>
        <source>no file name was given</source>
        <translation>non è stato dato un nome di file</translation>
    </message>
    <message>
        <source>the database has not been saved yet</source>
        <translation>il database non è ancora stato salvato</translation>
    </message>
    <message>
        <source>%1: another program has changed it since</source>
        <translation>%1: nel frattempo un altro programma lo ha modificato</translation>
    </message>
    <message>
        <source>%1: there is not enough memory to load it</source>
        <translation>%1: la memoria non basta per caricarlo</translation>
    </message>
    <message>
        <source>This file asks for more than usual: trying a password takes %1%2 MiB of memory.</source>
        <translation>Questo file chiede più del solito: provare una password richiede %1%2 MiB di memoria.</translation>
    </message>
    <message>
        <source>about %1 times as long, and </source>
        <translation>circa %1 volte il tempo e </translation>
    </message>
    <message>
        <source>%1: could not be saved: %2</source>
        <translation>%1: non è stato possibile salvarlo: %2</translation>
    </message>
    <message>
        <source>%1: was changed %2 since it was opened; use Save As</source>
        <translation>%1: è stato modificato %2 da quando è stato aperto; usare Salva con nome</translation>
    </message>
    <message>
        <source>in the other pane</source>
        <translation>nell&apos;altro pannello</translation>
    </message>
    <message>
        <source>by another program</source>
        <translation>da un altro programma</translation>
    </message>
    <message>
        <source>its folder is gone</source>
        <translation>la sua cartella non c&apos;è più</translation>
    </message>
    <message>
        <source>it is marked read-only; use Save As</source>
        <translation>è contrassegnato di sola lettura; usare Salva con nome</translation>
    </message>
    <message>
        <source>its name now belongs to something that is not a file</source>
        <translation>il suo nome ora è di qualcosa che non è un file</translation>
    </message>
    <message>
        <source>it cannot be read any more: %1</source>
        <translation>non si può più leggere: %1</translation>
    </message>
    <message>
        <source>another program is saving it just now; try again</source>
        <translation>un altro programma lo sta salvando proprio ora; riprovare</translation>
    </message>
    <message>
        <source>what was written does not read back: %1</source>
        <translation>ciò che è stato scritto non si rilegge: %1</translation>
    </message>
    <message>
        <source>another program has just made a file of this name; use Save As</source>
        <translation>un altro programma ha appena fatto un file con questo nome; usare Salva con nome</translation>
    </message>
    <message>
        <source>%1: was saved, but a power failure now might bring the old version back: %2</source>
        <translation>%1: è stato salvato, ma se ora mancasse la corrente potrebbe tornare la versione di prima: %2</translation>
    </message>
    <message>
        <source>%1 (it stays as &apos;%2&apos;)</source>
        <translation>%1 (resta come &apos;%2&apos;)</translation>
    </message>
    <message>
        <source>what stood there could not be looked at again; it</source>
        <translation>ciò che c&apos;era non si è potuto riesaminare; esso</translation>
    </message>
    <message>
        <source>another program had saved it meanwhile, and its version</source>
        <translation>nel frattempo un altro programma lo aveva salvato, e la sua versione</translation>
    </message>
    <message>
        <source>the version that stood there</source>
        <translation>la versione che c&apos;era</translation>
    </message>
    <message>
        <source>%1: was saved, but its previous version could not be removed and stays as &apos;%2&apos;: %3</source>
        <translation>%1: è stato salvato, ma la versione precedente non si è potuta rimuovere e resta come &apos;%2&apos;: %3</translation>
    </message>
    <message>
        <source>%1: the version that stood there is kept as &apos;%2&apos;</source>
        <translation>%1: la versione che c&apos;era è conservata come &apos;%2&apos;</translation>
    </message>
    <message>
        <source>%1: %2 is kept as &apos;%3&apos;</source>
        <translation>%1: %2 è conservata come &apos;%3&apos;</translation>
    </message>
    <message>
        <source>%1: a version that an interrupted save had left behind is kept as &apos;%2&apos;</source>
        <translation>%1: una versione lasciata da un salvataggio interrotto è conservata come &apos;%2&apos;</translation>
    </message>
    <message>
        <source>an earlier save of it had been cut short, and it could not be made whole first: %1</source>
        <translation>un salvataggio precedente era stato interrotto, e prima non si è potuto renderlo intero: %1</translation>
    </message>
    <message>
        <source>no safe copy of it could be made in &apos;%1&apos; first: %2</source>
        <translation>prima non si è potuta farne una copia sicura in &apos;%1&apos;: %2</translation>
    </message>
    <message>
        <source>%1; it is incomplete now, and becomes what it was before when it is next saved or opened</source>
        <translation>%1; ora è incompleto, e torna com&apos;era quando sarà di nuovo salvato o aperto</translation>
    </message>
    <message>
        <source>%1; whether the old or the new version stands there now could not be found out</source>
        <translation>%1; non si è potuto sapere se ora c&apos;è la versione vecchia o quella nuova</translation>
    </message>
    <message>
        <source>the version that stands there could not be kept: %1</source>
        <translation>la versione che c&apos;è non si è potuta conservare: %1</translation>
    </message>
    <message>
        <source>%1

The changes could not be kept in &apos;%2&apos; either: %3</source>
        <translation>%1

Le modifiche non si sono potute conservare neppure in &apos;%2&apos;: %3</translation>
    </message>
    <message>
        <source>%1

The changes are kept in &apos;%2&apos;.</source>
        <translation>%1

Le modifiche sono conservate in &apos;%2&apos;.</translation>
    </message>
    <message>
        <source>the current password is wrong</source>
        <translation>la password attuale è sbagliata</translation>
    </message>
    <message>
        <source>no database is loaded</source>
        <translation>nessun database è caricato</translation>
    </message>
    <message>
        <source>%1; the safe copy &apos;%2&apos; of a save that was cut short may not be read</source>
        <translation>%1; la copia sicura &apos;%2&apos; di un salvataggio interrotto non si può leggere</translation>
    </message>
    <message>
        <source>the safe copy &apos;%1&apos; of a save that was cut short may not be read</source>
        <translation>la copia sicura &apos;%1&apos; di un salvataggio interrotto non si può leggere</translation>
    </message>
    <message>
        <source>it is not the file that was being saved, but a copy of it</source>
        <translation>non è il file che si stava salvando, ma una sua copia</translation>
    </message>
    <message>
        <source>a save of the file that stood here before had been cut short; it is &apos;%1&apos; now and becomes whole when it is opened</source>
        <translation>un salvataggio del file che c&apos;era prima era stato interrotto; ora è &apos;%1&apos; e torna intero quando viene aperto</translation>
    </message>
    <message>
        <source>a save of it had been cut short; it is again what it was before that save</source>
        <translation>un suo salvataggio era stato interrotto; è di nuovo com&apos;era prima di quel salvataggio</translation>
    </message>
    <message>
        <source>a save of it had been cut short, and it could not be made whole: %1; what it was before that save is shown</source>
        <translation>un suo salvataggio era stato interrotto, e non si è potuto renderlo intero: %1; si mostra com&apos;era prima di quel salvataggio</translation>
    </message>
    <message>
        <source>a save of it had been cut short, and something else was put in its place since</source>
        <translation>un suo salvataggio era stato interrotto, e da allora qualcos&apos;altro ne ha preso il posto</translation>
    </message>
    <message>
        <source>%1; what it was before that save and what was to be saved are still in &apos;%2&apos;</source>
        <translation>%1; ciò che era prima di quel salvataggio e ciò che si doveva salvare sono ancora in &apos;%2&apos;</translation>
    </message>
    <message>
        <source>%1; what it was before that save and what was to be saved are still in &apos;%2&apos;, but could not be kept in &apos;%3&apos;: %4</source>
        <translation>%1; ciò che era prima di quel salvataggio e ciò che si doveva salvare sono ancora in &apos;%2&apos;, ma non si sono potuti conservare in &apos;%3&apos;: %4</translation>
    </message>
    <message>
        <source>%1; what it was before that save is kept in &apos;%2&apos;, what was to be saved in &apos;%3&apos;</source>
        <translation>%1; ciò che era prima di quel salvataggio è conservato in &apos;%2&apos;, ciò che si doveva salvare in &apos;%3&apos;</translation>
    </message>
    <message>
        <source>there may be unsaved changes to it, but %1</source>
        <translation>potrebbero esserci modifiche non salvate, ma %1</translation>
    </message>
    <message>
        <source>there are unsaved changes in &apos;%1&apos; that this password does not open: those of another protected file, or of this one under another password; they are kept, and shown when that is opened</source>
        <translation>ci sono in &apos;%1&apos; modifiche non salvate che questa password non apre: quelle di un altro file protetto, o di questo con un&apos;altra password; sono conservate, e mostrate quando quello viene aperto</translation>
    </message>
    <message>
        <source>there may be unsaved changes in &apos;%1&apos;, but they are not taken up: %2</source>
        <translation>potrebbero esserci modifiche non salvate in &apos;%1&apos;, ma non vengono riprese: %2</translation>
    </message>
    <message>
        <source>unsaved changes in &apos;%1&apos; cannot be read: it is damaged</source>
        <translation>le modifiche non salvate in &apos;%1&apos; non si possono leggere: è danneggiato</translation>
    </message>
    <message>
        <source>there are unsaved changes in &apos;%1&apos; that were not sealed with its password; they are kept there, and not taken up</source>
        <translation>ci sono in &apos;%1&apos; modifiche non salvate che non erano sigillate con la sua password; restano lì, e non vengono riprese</translation>
    </message>
    <message>
        <source>there are unsaved changes to &apos;%1&apos;, of which this is a copy; they are shown when that one is opened</source>
        <translation>ci sono modifiche non salvate a &apos;%1&apos;, di cui questo è una copia; sono mostrate quando quello viene aperto</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be read: %2</source>
        <translation>&apos;%1&apos; non si può leggere: %2</translation>
    </message>
    <message>
        <source>there are unsaved changes to another database that stood here before; they are kept in &apos;%1&apos;, and shown when that one is opened</source>
        <translation>ci sono modifiche non salvate a un altro database che c&apos;era prima; sono conservate in &apos;%1&apos;, e mostrate quando quello viene aperto</translation>
    </message>
    <message>
        <source>there are unsaved changes that were sealed with another password; they are kept for when it is opened with that one</source>
        <translation>ci sono modifiche non salvate che erano sigillate con un&apos;altra password; sono conservate per quando viene aperto con quella</translation>
    </message>
    <message>
        <source>there are unsaved changes, but they cannot be read now: %1</source>
        <translation>ci sono modifiche non salvate, ma ora non si possono leggere: %1</translation>
    </message>
    <message>
        <source>the journal of these changes is damaged: those that were made last are missing</source>
        <translation>il giornale di queste modifiche è danneggiato: mancano le ultime fatte</translation>
    </message>
    <message>
        <source>%1; all that is left of it is kept in &apos;%2&apos; for seven days</source>
        <translation>%1; tutto ciò che ne resta è conservato in &apos;%2&apos; per sette giorni</translation>
    </message>
    <message>
        <source>changes that were not saved when the program ended could not be made again; they are kept in &apos;%1&apos; for seven days</source>
        <translation>le modifiche non salvate alla fine del programma non si sono potute rifare; sono conservate in &apos;%1&apos; per sette giorni</translation>
    </message>
    <message>
        <source>changes that were not saved when the program ended are there again; they are still unsaved</source>
        <translation>le modifiche non salvate alla fine del programma ci sono di nuovo; non sono ancora salvate</translation>
    </message>
    <message>
        <source>there are unsaved changes to an earlier version of it, which cannot be made in this one; they are kept in &apos;%1&apos; for seven days</source>
        <translation>ci sono modifiche non salvate a una sua versione precedente, che in questa non si possono fare; sono conservate in &apos;%1&apos; per sette giorni</translation>
    </message>
    <message>
        <source>there are unsaved changes of another session in &apos;%1&apos;, which cannot be kept as a file of their own now: %2</source>
        <translation>ci sono in &apos;%1&apos; modifiche non salvate di un&apos;altra sessione, che ora non si possono conservare come file a sé: %2</translation>
    </message>
    <message>
        <source>unsaved changes of another session are kept as a file of their own in &apos;%1&apos;</source>
        <translation>le modifiche non salvate di un&apos;altra sessione sono conservate come file a sé in &apos;%1&apos;</translation>
    </message>
    <message>
        <source>some of these changes could not be made in this version, and are missing there; all of them are kept in &apos;%1&apos; for seven days</source>
        <translation>alcune di queste modifiche non si sono potute fare in questa versione, e lì mancano; tutte sono conservate in &apos;%1&apos; per sette giorni</translation>
    </message>
    <message>
        <source>unsaved changes of another session are still kept as they were sealed before, not with the password that holds now: %1</source>
        <translation>le modifiche non salvate di un&apos;altra sessione sono ancora conservate com&apos;erano sigillate prima, non con la password che vale ora: %1</translation>
    </message>
    <message>
        <source>another editor writes them</source>
        <translation>un altro editor le scrive</translation>
    </message>
    <message>
        <source>it is not a file</source>
        <translation>non è un file</translation>
    </message>
    <message>
        <source>it is no journal</source>
        <translation>non è un giornale</translation>
    </message>
    <message>
        <source>a newer version of this program wrote it</source>
        <translation>l&apos;ha scritto una versione più recente di questo programma</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not used: %2</source>
        <translation>&apos;%1&apos; non si usa: %2</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be read now: %2</source>
        <translation>&apos;%1&apos; ora non si può leggere: %2</translation>
    </message>
    <message>
        <source>%1: changes are not kept safe against a crash until it is saved: %2</source>
        <translation>%1: finché non viene salvato, le modifiche non sono al sicuro da un arresto improvviso: %2</translation>
    </message>
    <message>
        <source>%1: another program took away the journal that keeps its unsaved changes; it was written anew</source>
        <translation>%1: un altro programma ha tolto il giornale che conserva le sue modifiche non salvate; è stato scritto di nuovo</translation>
    </message>
    <message>
        <source>the system does not tell where it stands</source>
        <translation>il sistema non dice dove si trova</translation>
    </message>
    <message>
        <source>a text in a journal is not in UTF-8</source>
        <translation>un testo in un giornale non è in UTF-8</translation>
    </message>
    <message>
        <source>a block in a journal does not fit its field</source>
        <translation>un blocco in un giornale non si adatta al suo campo</translation>
    </message>
    <message>
        <source>The name &quot;%1...&quot; is longer than %2 characters.</source>
        <translation>Il nome &quot;%1...&quot; è più lungo di %2 caratteri.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be a name: it is empty.</source>
        <translation>&quot;%1&quot; non può essere un nome: è vuoto.</translation>
    </message>
    <message>
        <source>A table &quot;%1&quot; already exists.</source>
        <translation>Una tabella &quot;%1&quot; esiste già.</translation>
    </message>
    <message>
        <source>A database holds at most %1 tables.</source>
        <translation>Un database contiene al massimo %1 tabelle.</translation>
    </message>
    <message>
        <source>There is no field type with the code %1.</source>
        <translation>Non c&apos;è un tipo di campo con il codice %1.</translation>
    </message>
    <message>
        <source>A field &quot;%1&quot; already exists.</source>
        <translation>Un campo &quot;%1&quot; esiste già.</translation>
    </message>
    <message>
        <source>A table holds at most %1 fields.</source>
        <translation>Una tabella contiene al massimo %1 campi.</translation>
    </message>
    <message>
        <source>A table holds at most %1 records.</source>
        <translation>Una tabella contiene al massimo %1 record.</translation>
    </message>
    <message>
        <source>A text of a block is not in UTF-8.</source>
        <translation>Un testo di un blocco non è in UTF-8.</translation>
    </message>
    <message>
        <source>There is no table &quot;%1&quot;.</source>
        <translation>Non c&apos;è una tabella &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>There is no table number %1: the database has %2.</source>
        <translation>Non c&apos;è una tabella numero %1: il database ne ha %2.</translation>
    </message>
    <message>
        <source>There is no field number %1: the table has %2.</source>
        <translation>Non c&apos;è un campo numero %1: la tabella ne ha %2.</translation>
    </message>
    <message>
        <source>There is no record number %1: the table has %2.</source>
        <translation>Non c&apos;è un record numero %1: la tabella ne ha %2.</translation>
    </message>
    <message>
        <source>There is no step number %1: there are %2.</source>
        <translation>Non c&apos;è un passo numero %1: ce ne sono %2.</translation>
    </message>
    <message>
        <source>No table is selected.</source>
        <translation>Nessuna tabella è selezionata.</translation>
    </message>
    <message>
        <source>No record is selected.</source>
        <translation>Nessun record è selezionato.</translation>
    </message>
    <message>
        <source>No database is open: its file could not be loaded.</source>
        <translation>Nessun database è aperto: il suo file non si è potuto caricare.</translation>
    </message>
    <message>
        <source>This database is in use: another file cannot be loaded into it.</source>
        <translation>Questo database è in uso: non vi si può caricare un altro file.</translation>
    </message>
    <message>
        <source>The database has no file name yet.</source>
        <translation>Il database non ha ancora un nome di file.</translation>
    </message>
    <message>
        <source>The password was not changed: %1.</source>
        <translation>La password non è stata cambiata: %1.</translation>
    </message>
    <message>
        <source>A value of this kind cannot be stored in a field.</source>
        <translation>Un valore di questo genere non si può memorizzare in un campo.</translation>
    </message>
    <message>
        <source>%1 records cannot be read.</source>
        <translation>%1 record non si possono leggere.</translation>
    </message>
    <message>
        <source>%1 records cannot be added.</source>
        <translation>%1 record non si possono aggiungere.</translation>
    </message>
    <message>
        <source>The block has values of another type than the field.</source>
        <translation>Il blocco ha valori di un tipo diverso da quello del campo.</translation>
    </message>
    <message>
        <source>The block has more values than there are records from number %1 on.</source>
        <translation>Il blocco ha più valori di quanti sono i record dal numero %1 in poi.</translation>
    </message>
    <message>
        <source>That is no order of the table&apos;s records.</source>
        <translation>Quello non è un ordine dei record della tabella.</translation>
    </message>
    <message>
        <source>This is no block of a column: %1.</source>
        <translation>Questo non è un blocco di una colonna: %1.</translation>
    </message>
    <message>
        <source>it is no list</source>
        <translation>non è un elenco</translation>
    </message>
    <message>
        <source>it begins with no type</source>
        <translation>non comincia con un tipo</translation>
    </message>
    <message>
        <source>there is no type with the code %1</source>
        <translation>non c&apos;è un tipo con il codice %1</translation>
    </message>
    <message>
        <source>its parts are not those of its type</source>
        <translation>le sue parti non sono quelle del suo tipo</translation>
    </message>
    <message>
        <source>its last value is cut off</source>
        <translation>il suo ultimo valore è troncato</translation>
    </message>
    <message>
        <source>a text reaches beyond its bytes</source>
        <translation>un testo va oltre i suoi byte</translation>
    </message>
    <message>
        <source>%1 before the running group of changes has ended.</source>
        <translation>%1 prima che il gruppo di modifiche in corso sia finito.</translation>
    </message>
    <message>
        <source>The database cannot be saved</source>
        <translation>Il database non si può salvare</translation>
    </message>
    <message>
        <source>The password cannot be changed</source>
        <translation>La password non si può cambiare</translation>
    </message>
    <message>
        <source>No step can be taken back or made again</source>
        <translation>Nessun passo si può annullare o ripetere</translation>
    </message>
    <message>
        <source>The database cannot go back to what is saved</source>
        <translation>Il database non può tornare a ciò che è salvato</translation>
    </message>
    <message>
        <source>No group of changes has begun.</source>
        <translation>Nessun gruppo di modifiche è cominciato.</translation>
    </message>
    <message>
        <source>No step has begun.</source>
        <translation>Nessun passo è cominciato.</translation>
    </message>
    <message>
        <source>There is nothing to take back.</source>
        <translation>Non c&apos;è nulla da annullare.</translation>
    </message>
    <message>
        <source>There is nothing to make again.</source>
        <translation>Non c&apos;è nulla da ripetere.</translation>
    </message>
    <message>
        <source>%1: the first steps can no longer be taken back: the memory for steps, %2 MiB, is used up</source>
        <translation>%1: i primi passi non si possono più annullare: la memoria per i passi, %2 MiB, è esaurita</translation>
    </message>
    <message>
        <source>No component serves &quot;%1&quot;. Folders searched: %2.</source>
        <translation>Nessun componente serve &quot;%1&quot;. Cartelle cercate: %2.</translation>
    </message>
    <message>
        <source>No component serves &quot;%1&quot;. Folders searched: %2. Of another version of the interface than %3: %4.</source>
        <translation>Nessun componente serve &quot;%1&quot;. Cartelle cercate: %2. Di un&apos;altra versione dell&apos;interfaccia rispetto a %3: %4.</translation>
    </message>
    <message>
        <source>The component &quot;%1&quot; cannot be loaded from %2: %3</source>
        <translation>Il componente &quot;%1&quot; non si può caricare da %2: %3</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has not a name for each value</source>
        <translation>&quot;%1&quot; non ha un nome per ogni valore</translation>
    </message>
    <message>
        <source>its key has no value</source>
        <translation>la sua chiave non ha un valore</translation>
    </message>
    <message>
        <source>it has neither &quot;record&quot; nor &quot;key&quot;</source>
        <translation>non ha né &quot;record&quot; né &quot;key&quot;</translation>
    </message>
    <message>
        <source>there are no conflicts of a &quot;%1&quot;</source>
        <translation>non ci sono conflitti di &quot;%1&quot;</translation>
    </message>
    <message>
        <source>there are no conflicts about a &quot;%1&quot;</source>
        <translation>non ci sono conflitti su &quot;%1&quot;</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has a record of another length</source>
        <translation>&quot;%1&quot; ha un record di un&apos;altra lunghezza</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has no value</source>
        <translation>&quot;%1&quot; non ha alcun valore</translation>
    </message>
    <message>
        <source>it is the same as a line before it</source>
        <translation>è uguale a una riga precedente</translation>
    </message>
    <message>
        <source>the current folder &quot;%1&quot; is not UTF-8: such a name cannot be told from another one</source>
        <translation>la cartella corrente &quot;%1&quot; non è UTF-8: un tale nome non si distingue da un altro</translation>
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
    <message>
        <source>The records of &apos;%1&apos; are not as the merge has left them; they may be other ones.<byte value="xd"/>
Take that side there all the same?</source>
        <translation>I record di &apos;%1&apos; non sono come li ha lasciati l&apos;unione; possono essere altri.<byte value="xd"/>
Prendere comunque lì quella versione?</translation>
    </message>
    <message>
        <source>The list does not tell whether the records of &apos;%1&apos; are still those that the merge meant.<byte value="xd"/>
Take that side there all the same?</source>
        <translation>L&apos;elenco non dice se i record di &apos;%1&apos; sono ancora quelli intesi dall&apos;unione.<byte value="xd"/>
Prendere comunque lì quella versione?</translation>
    </message>
    <message>
        <source>Record %1 of &apos;%2&apos; is not as the merge has left it; it may be another one.<byte value="xd"/>
Take that side there all the same?</source>
        <translation>Il record %1 di &apos;%2&apos; non è come l&apos;ha lasciato l&apos;unione; può essere un altro.<byte value="xd"/>
Prendere comunque lì quella versione?</translation>
    </message>
    <message>
        <source>The list does not tell whether record %1 of &apos;%2&apos; is still the one that the merge meant.<byte value="xd"/>
Take that side there all the same?</source>
        <translation>L&apos;elenco non dice se il record %1 di &apos;%2&apos; è ancora quello inteso dall&apos;unione.<byte value="xd"/>
Prendere comunque lì quella versione?</translation>
    </message>
    <message>
        <source>Left, since the record may be another one now: %1. Take such a side by itself.</source>
        <translation>Lasciati, perché il record può essere ormai un altro: %1. Prendere questi uno per uno.</translation>
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
    <message>
        <source>open; the table is another one now</source>
        <translation>aperto; la tabella ora è un&apos;altra</translation>
    </message>
    <message>
        <source>open; the records are not as the merge has left them</source>
        <translation>aperto; i record non sono come li ha lasciati l&apos;unione</translation>
    </message>
    <message>
        <source>open; only their order tells the records</source>
        <translation>aperto; solo l&apos;ordine indica i record</translation>
    </message>
    <message>
        <source>open; the record is not as the merge has left it</source>
        <translation>aperto; il record non è come l&apos;ha lasciato l&apos;unione</translation>
    </message>
    <message>
        <source>open; only its number tells the record</source>
        <translation>aperto; solo il numero indica il record</translation>
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
    <message>
        <source>Made %1</source>
        <translation>Creato %1</translation>
    </message>
    <message>
        <source>Read %1</source>
        <translation>Letto %1</translation>
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
    <message>
        <source>The tables could not be read.</source>
        <translation>Impossibile leggere le tabelle.</translation>
    </message>
    <message>
        <source>Stopped. The tables were not read.</source>
        <translation>Interrotto. Le tabelle non sono state lette.</translation>
    </message>
    <message>
        <source>Searching...</source>
        <translation>Ricerca in corso...</translation>
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
