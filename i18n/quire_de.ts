<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>QObject</name>
    <message>
        <source>Input command has insufficient arguments.</source>
        <comment>orvex error</comment>
        <translation>Der Eingabebefehl hat zu wenige Argumente.</translation>
    </message>
    <message>
        <source>Input argument not recognized.</source>
        <comment>orvex error</comment>
        <translation>Das Eingabeargument ist unbekannt.</translation>
    </message>
    <message>
        <source>Subdirectory limit reached.</source>
        <comment>orvex error</comment>
        <translation>Die Höchstzahl an Unterverzeichnissen ist erreicht.</translation>
    </message>
    <message>
        <source>Command is not authorized.</source>
        <comment>orvex error</comment>
        <translation>Keine Berechtigung für diesen Befehl.</translation>
    </message>
    <message>
        <source>Improper command syntax.</source>
        <comment>orvex error</comment>
        <translation>Falsche Befehlssyntax.</translation>
    </message>
    <message>
        <source>Queue only allowed at lowest level.</source>
        <comment>orvex error</comment>
        <translation>Eine Warteschlange ist nur auf der untersten Ebene zulässig.</translation>
    </message>
    <message>
        <source>System error.</source>
        <comment>orvex error</comment>
        <translation>Systemfehler.</translation>
    </message>
    <message>
        <source>Entry already exists.</source>
        <comment>orvex error</comment>
        <translation>Der Eintrag ist bereits vorhanden.</translation>
    </message>
    <message>
        <source>Entry no longer exists.</source>
        <comment>orvex error</comment>
        <translation>Der Eintrag ist nicht mehr vorhanden.</translation>
    </message>
    <message>
        <source>Destination invalid.</source>
        <comment>orvex error</comment>
        <translation>Ungültiges Ziel.</translation>
    </message>
    <message>
        <source>Story currently being edited.</source>
        <comment>orvex error</comment>
        <translation>Die Meldung wird gerade bearbeitet.</translation>
    </message>
    <message>
        <source>Story/directory/queue locked.</source>
        <comment>orvex error</comment>
        <translation>Die Meldung, das Verzeichnis oder die Warteschlange ist gesperrt.</translation>
    </message>
    <message>
        <source>Queue is purge locked (purge/remove).</source>
        <comment>orvex error</comment>
        <translation>Die Warteschlange ist gegen Löschen gesperrt (Bereinigen/Entfernen).</translation>
    </message>
    <message>
        <source>Queue is not empty.</source>
        <comment>orvex error</comment>
        <translation>Die Warteschlange ist nicht leer.</translation>
    </message>
    <message>
        <source>Invalid from current special mode.</source>
        <comment>orvex error</comment>
        <translation>Im aktuellen Sondermodus nicht zulässig.</translation>
    </message>
    <message>
        <source>Can&apos;t find a keyword.</source>
        <comment>orvex error</comment>
        <translation>Ein Schlüsselwort wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>Queue doesn&apos;t allow batch operation.</source>
        <comment>orvex error</comment>
        <translation>Die Warteschlange erlaubt keine Stapelverarbeitung.</translation>
    </message>
    <message>
        <source>No such user.</source>
        <comment>orvex error</comment>
        <translation>Diesen Benutzer gibt es nicht.</translation>
    </message>
    <message>
        <source>User not logged in.</source>
        <comment>orvex error</comment>
        <translation>Der Benutzer ist nicht angemeldet.</translation>
    </message>
    <message>
        <source>User logged in (no message to send).</source>
        <comment>orvex error</comment>
        <translation>Der Benutzer ist angemeldet (keine Nachricht zu senden).</translation>
    </message>
    <message>
        <source>Read-only, no typing allowed.</source>
        <comment>orvex error</comment>
        <translation>Schreibgeschützt, keine Eingabe möglich.</translation>
    </message>
    <message>
        <source>Could not open map story.</source>
        <comment>orvex error</comment>
        <translation>Die Zuordnungsmeldung konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>No entry in map story.</source>
        <comment>orvex error</comment>
        <translation>Kein Eintrag in der Zuordnungsmeldung.</translation>
    </message>
    <message>
        <source>User identification not accepted.</source>
        <comment>orvex error</comment>
        <translation>Die Benutzerkennung wurde nicht akzeptiert.</translation>
    </message>
    <message>
        <source>Directory or queue is empty.</source>
        <comment>orvex error</comment>
        <translation>Das Verzeichnis oder die Warteschlange ist leer.</translation>
    </message>
    <message>
        <source>Move converted to duplicate.</source>
        <comment>orvex error</comment>
        <translation>Das Verschieben wurde in ein Duplizieren umgewandelt.</translation>
    </message>
    <message>
        <source>System offline message.</source>
        <comment>orvex error</comment>
        <translation>Nachricht: Das System ist offline.</translation>
    </message>
    <message>
        <source>Refresh mode on.</source>
        <comment>orvex error</comment>
        <translation>Der Aktualisierungsmodus ist eingeschaltet.</translation>
    </message>
    <message>
        <source>Print the message in the packet.</source>
        <comment>orvex error</comment>
        <translation>Die Nachricht im Paket ausgeben.</translation>
    </message>
    <message>
        <source>Unable to send mail.</source>
        <comment>orvex error</comment>
        <translation>Die Mail kann nicht gesendet werden.</translation>
    </message>
    <message>
        <source>Password requested was too short.</source>
        <comment>orvex error</comment>
        <translation>Das gewünschte Kennwort war zu kurz.</translation>
    </message>
    <message>
        <source>Batch MOVE, DUP, KILL partial failure.</source>
        <comment>orvex error</comment>
        <translation>MOVE, DUP, KILL im Stapel: teilweise fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Command in progress.</source>
        <comment>orvex error</comment>
        <translation>Der Befehl wird gerade ausgeführt.</translation>
    </message>
    <message>
        <source>Database element name too long.</source>
        <comment>orvex error</comment>
        <translation>Der Name des Datenbankelements ist zu lang.</translation>
    </message>
    <message>
        <source>Queue is being ordered.</source>
        <comment>orvex error</comment>
        <translation>Die Warteschlange wird gerade sortiert.</translation>
    </message>
    <message>
        <source>This name is being used for a group.</source>
        <comment>orvex error</comment>
        <translation>Dieser Name wird bereits für eine Gruppe verwendet.</translation>
    </message>
    <message>
        <source>Read-only wire story.</source>
        <comment>orvex error</comment>
        <translation>Schreibgeschützte Agenturmeldung.</translation>
    </message>
    <message>
        <source>Queue is up to date.</source>
        <comment>orvex error</comment>
        <translation>Die Warteschlange ist auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>No form for new story.</source>
        <comment>orvex error</comment>
        <translation>Kein Formular für die neue Meldung.</translation>
    </message>
    <message>
        <source>ZEKO syntax error on story save.</source>
        <comment>orvex error</comment>
        <translation>ZEKO-Syntaxfehler beim Speichern der Meldung.</translation>
    </message>
    <message>
        <source>Open of old version for copying failed.</source>
        <comment>orvex error</comment>
        <translation>Die alte Fassung konnte nicht zum Kopieren geöffnet werden.</translation>
    </message>
    <message>
        <source>No devices to monitor.</source>
        <comment>orvex error</comment>
        <translation>Keine Geräte zu überwachen.</translation>
    </message>
    <message>
        <source>Queue doesn&apos;t allow batch print.</source>
        <comment>orvex error</comment>
        <translation>Die Warteschlange erlaubt keinen Stapeldruck.</translation>
    </message>
    <message>
        <source>Queue is production locked.</source>
        <comment>orvex error</comment>
        <translation>Die Warteschlange ist für die Produktion gesperrt.</translation>
    </message>
    <message>
        <source>The news system is offline.</source>
        <comment>nrcs login error</comment>
        <translation>Das Redaktionssystem ist offline.</translation>
    </message>
    <message>
        <source>Your client system is not part of the news system configuration.</source>
        <comment>nrcs login error</comment>
        <translation>Ihr Arbeitsplatz gehört nicht zur Konfiguration des Redaktionssystems.</translation>
    </message>
    <message>
        <source>Resource is not available. Please attempt to connect to a different server.</source>
        <comment>nrcs login error</comment>
        <translation>Die Ressource ist nicht verfügbar. Bitte versuchen Sie, sich mit einem anderen Server zu verbinden.</translation>
    </message>
    <message>
        <source>The news system has run out of resources for new sessions.</source>
        <comment>nrcs login error</comment>
        <translation>Das Redaktionssystem hat keine Ressourcen mehr für neue Sitzungen.</translation>
    </message>
    <message>
        <source>Your client system is not listed as authorized for connection to the news system.</source>
        <comment>nrcs login error</comment>
        <translation>Ihr Arbeitsplatz ist nicht für die Verbindung mit dem Redaktionssystem freigegeben.</translation>
    </message>
    <message>
        <source>Your client application version is incompatible with your selected News Server.  Please select another server.</source>
        <comment>nrcs login error</comment>
        <translation>Die Version Ihrer Anwendung ist mit dem gewählten Redaktionsserver nicht kompatibel. Bitte wählen Sie einen anderen Server.</translation>
    </message>
    <message>
        <source>Invalid user name or password.</source>
        <comment>nrcs login error</comment>
        <translation>Ungültiger Benutzername oder ungültiges Kennwort.</translation>
    </message>
    <message>
        <source>News server not found.</source>
        <comment>nrcs login error</comment>
        <translation>Der Redaktionsserver wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>Unexpected error, code = x%1.</source>
        <comment>error message</comment>
        <translation>Unerwarteter Fehler, Code = x%1.</translation>
    </message>
</context>
<context>
    <name>Quire::DirectoryModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
</context>
<context>
    <name>Quire::QueueModel</name>
    <message>
        <source>Lock</source>
        <translation>Sperre</translation>
    </message>
    <message>
        <source>Words</source>
        <translation>Wörter</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>Lesetempo</translation>
    </message>
    <message>
        <source>Break</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Float</source>
        <translation>Schwebend</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>Zurückgestellt</translation>
    </message>
    <message>
        <source>Wire</source>
        <translation>Agentur</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>Mail</translation>
    </message>
    <message>
        <source>Queue</source>
        <translation>Warteschlange</translation>
    </message>
    <message>
        <source>Story</source>
        <translation>Meldung</translation>
    </message>
</context>
<context>
    <name>Quire::StoryFieldsModel</name>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
</TS>
