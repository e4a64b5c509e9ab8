<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>AboutDialog</name>
    <message>
        <source>About zelk</source>
        <translation>Über zelk</translation>
    </message>
    <message>
        <source>zelk</source>
        <translation>zelk</translation>
    </message>
    <message>
        <source>Turns playlists into a DJ-ready local music library.</source>
        <translation>Macht aus Playlists eine lokale, auflegefertige Musiksammlung.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Visit Website</source>
        <translation>Website besuchen</translation>
    </message>
    <message>
        <source>Free software under the MIT License</source>
        <translation>Freie Software unter der MIT-Lizenz</translation>
    </message>
</context>
<context>
    <name>AccountControl</name>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Connecting to %1</source>
        <translation>Verbindung mit %1 wird hergestellt</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Connect %1</source>
        <translation>%1 verbinden</translation>
    </message>
</context>
<context>
    <name>AccountsSettings</name>
    <message>
        <source>Cloud sign-in uses your Apple Music subscription (preferred). The Music app on this Mac is a free local backup that needs Automation permission.</source>
        <translation>Die Anmeldung in der Cloud nutzt dein Apple-Music-Abo (empfohlen). Die Musik-App auf diesem Mac ist die kostenlose lokale Alternative und braucht die Berechtigung „Automation“.</translation>
    </message>
    <message>
        <source>Music app on this Mac</source>
        <translation>Musik-App auf diesem Mac</translation>
    </message>
    <message>
        <source>Local backup</source>
        <translation>Lokale Alternative</translation>
    </message>
    <message>
        <source>Authorize zelk in your browser to read your Spotify playlists.</source>
        <translation>Erlaube zelk im Browser, deine Spotify-Playlists zu lesen.</translation>
    </message>
</context>
<context>
    <name>AppModel</name>
    <message>
        <source>Spotify connection failed: </source>
        <translation>Die Verbindung mit Spotify ist fehlgeschlagen: </translation>
    </message>
    <message>
        <source>Select one or more playlists first.</source>
        <translation>Wähle zuerst eine oder mehrere Playlists.</translation>
    </message>
</context>
<context>
    <name>AppleMusicAuthService</name>
    <message>
        <source>Cloud Apple Music isn&apos;t available right now. zelk will keep using your local Music library.</source>
        <translation>Apple Music ist in der Cloud gerade nicht verfügbar. zelk verwendet weiter deine lokale Mediathek.</translation>
    </message>
    <message>
        <source>Apple Music connection failed: </source>
        <translation>Die Verbindung mit Apple Music ist fehlgeschlagen: </translation>
    </message>
    <message>
        <source>Apple Music access was not granted. Using your local library instead.</source>
        <translation>Der Zugriff auf Apple Music wurde nicht erlaubt. zelk verwendet stattdessen deine lokale Mediathek.</translation>
    </message>
</context>
<context>
    <name>BannerView</name>
    <message>
        <source>Reconnect</source>
        <translation>Neu verbinden</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
</context>
<context>
    <name>CLIInstaller</name>
    <message>
        <source>Administrator authorization failed: </source>
        <translation>Die Freigabe als Administrator ist fehlgeschlagen: </translation>
    </message>
    <message>
        <source>Could not install the CLI: </source>
        <translation>Das Befehlszeilenprogramm konnte nicht installiert werden: </translation>
    </message>
    <message>
        <source>The bundled zelk helper could not be located.</source>
        <translation>Das mitgelieferte Hilfsprogramm von zelk wurde nicht gefunden.</translation>
    </message>
</context>
<context>
    <name>CLIToolSettings</name>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Reinstall</source>
        <translation>Neu installieren</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installieren</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>Deinstallieren</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparieren</translation>
    </message>
    <message>
        <source>Installs a </source>
        <translation>Installiert den symbolischen Link </translation>
    </message>
    <message>
        <source> symlink that tracks app updates automatically.</source>
        <translation>, der App-Updates automatisch folgt.</translation>
    </message>
</context>
<context>
    <name>ConfidenceMeter</name>
    <message>
        <source>Match confidence</source>
        <translation>Übereinstimmung des Treffers</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 Prozent</translation>
    </message>
    <message>
        <source>Confidence</source>
        <translation>Übereinstimmung</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>ConnectMusicScreen</name>
    <message>
        <source>Apple Music</source>
        <translation>Apple Music</translation>
    </message>
    <message>
        <source>Sign in to read your Apple Music Cloud library and playlists.</source>
        <translation>Melde dich an, damit zelk deine Apple-Music-Mediathek und deine Playlists in der Cloud lesen kann.</translation>
    </message>
    <message>
        <source>Use the Music app on this Mac</source>
        <translation>Musik-App auf diesem Mac verwenden</translation>
    </message>
    <message>
        <source>A backup that reads local playlists — no subscription needed. Requires Automation permission.</source>
        <translation>Eine Alternative, die lokale Playlists liest – ganz ohne Abo. Braucht die Berechtigung „Automation“.</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Aktiviert</translation>
    </message>
    <message>
        <source>Denied</source>
        <translation>Abgelehnt</translation>
    </message>
    <message>
        <source>Allow Access</source>
        <translation>Zugriff erlauben</translation>
    </message>
    <message>
        <source>Open Settings…</source>
        <translation>Einstellungen öffnen …</translation>
    </message>
    <message>
        <source>Spotify</source>
        <translation>Spotify</translation>
    </message>
    <message>
        <source>MusicBrainz + AcoustID</source>
        <translation>MusicBrainz + AcoustID</translation>
    </message>
    <message>
        <source>Confirm each download is the right recording with MusicBrainz + AcoustID. More accurate, a little slower.</source>
        <translation>Prüft mit MusicBrainz + AcoustID, ob jeder Download die richtige Aufnahme ist. Genauer, aber etwas langsamer.</translation>
    </message>
    <message>
        <source>Enable MusicBrainz and AcoustID matching</source>
        <translation>Abgleich mit MusicBrainz und AcoustID einschalten</translation>
    </message>
    <message>
        <source>Reject a download AcoustID flags as a different recording.</source>
        <translation>Verwirft einen Download, den AcoustID als andere Aufnahme erkennt.</translation>
    </message>
    <message>
        <source>AcoustID API key (optional)</source>
        <translation>AcoustID-API-Schlüssel (optional)</translation>
    </message>
</context>
<context>
    <name>DiagnosticsSettings</name>
    <message>
        <source>Checks</source>
        <translation>Prüfungen</translation>
    </message>
    <message>
        <source>Run All</source>
        <translation>Alle ausführen</translation>
    </message>
    <message>
        <source>Run the checks to see your setup status.</source>
        <translation>Führe die Prüfungen aus, um den Stand deiner Einrichtung zu sehen.</translation>
    </message>
    <message>
        <source>Fix</source>
        <translation>Beheben</translation>
    </message>
</context>
<context>
    <name>DownloadSourcesScreen</name>
    <message>
        <source>Privacy</source>
        <translation>Privatsphäre</translation>
    </message>
    <message>
        <source>Vantrix VPN</source>
        <translation>Vantrix VPN</translation>
    </message>
    <message>
        <source>Vantrix VPN subscription URL (optional)</source>
        <translation>Abo-URL für Vantrix VPN (optional)</translation>
    </message>
</context>
<context>
    <name>FineTuningScreen</name>
    <message>
        <source>Download location</source>
        <translation>Speicherort</translation>
    </message>
    <message>
        <source>Downloads are saved here and auto-imported into your djay library.</source>
        <translation>Downloads landen hier und werden automatisch in deine djay-Bibliothek importiert.</translation>
    </message>
    <message>
        <source>Download quality</source>
        <translation>Downloadqualität</translation>
    </message>
</context>
<context>
    <name>FinishScreen</name>
    <message>
        <source>You&apos;re all set</source>
        <translation>Alles bereit</translation>
    </message>
    <message>
        <source>zelk is ready to build your library.</source>
        <translation>zelk kann jetzt deine Sammlung aufbauen.</translation>
    </message>
    <message>
        <source>Select playlists in the sidebar and press Sync. Downloads land in your djay watch folder automatically.</source>
        <translation>Wähle Playlists in der Seitenleiste und drücke Sync. Downloads landen automatisch in deinem von djay überwachten Ordner.</translation>
    </message>
</context>
<context>
    <name>FinishSeal</name>
    <message>
        <source>Setup complete</source>
        <translation>Einrichtung abgeschlossen</translation>
    </message>
</context>
<context>
    <name>FolderLine</name>
    <message>
        <source>Change…</source>
        <translation>Ändern …</translation>
    </message>
</context>
<context>
    <name>GeneralSettings</name>
    <message>
        <source>Appearance</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>Theme</source>
        <translation>Design</translation>
    </message>
    <message>
        <source>Reduce glass effects</source>
        <translation>Glaseffekte reduzieren</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Updates</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Setup</source>
        <translation>Einrichtung</translation>
    </message>
    <message>
        <source>Re-run Setup Wizard…</source>
        <translation>Einrichtungsassistent erneut starten …</translation>
    </message>
    <message>
        <source>Reconnect accounts and reconfigure sources, quality, and output.</source>
        <translation>Verbinde Konten neu und ändere Quellen, Qualität und Ausgabe.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Apple Music and Spotify are trademarks of their respective owners.</source>
        <translation>Apple Music und Spotify sind Marken ihrer jeweiligen Inhaber.</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>CLI version</source>
        <translation>CLI-Version</translation>
    </message>
</context>
<context>
    <name>HelperError</name>
    <message>
        <source>Could not understand a message from the helper: </source>
        <translation>Eine Nachricht des Hilfsprogramms ist unverständlich: </translation>
    </message>
    <message>
        <source>The zelk helper could not be found in the app bundle.</source>
        <translation>Das Hilfsprogramm von zelk wurde im Paket der App nicht gefunden.</translation>
    </message>
    <message>
        <source>The zelk helper stopped unexpectedly.</source>
        <translation>Das Hilfsprogramm von zelk wurde unerwartet beendet.</translation>
    </message>
    <message>
        <source>The zelk helper is not available.</source>
        <translation>Das Hilfsprogramm von zelk ist nicht verfügbar.</translation>
    </message>
    <message>
        <source>The request to the helper timed out.</source>
        <translation>Das Hilfsprogramm hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>The request was cancelled.</source>
        <translation>Die Anfrage wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Unbekannter Fehler</translation>
    </message>
</context>
<context>
    <name>LibraryDetailView</name>
    <message>
        <source>Helper Unavailable</source>
        <translation>Hilfsprogramm nicht verfügbar</translation>
    </message>
    <message>
        <source>Select a Playlist</source>
        <translation>Wähle eine Playlist</translation>
    </message>
    <message>
        <source>Choose a playlist in the sidebar to see its tracks, then press Sync (⌘R) to download.</source>
        <translation>Wähle in der Seitenleiste eine Playlist, um ihre Titel zu sehen, und drücke dann Sync (⌘R), um sie herunterzuladen.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>zelk</source>
        <translation>zelk</translation>
    </message>
</context>
<context>
    <name>MusicSignInPage</name>
    <message>
        <source>en</source>
        <comment>the language of this page, as HTML names it</comment>
        <translation>de</translation>
    </message>
    <message>
        <source>zelk: Sign in to Apple Music</source>
        <translation>zelk: Bei Apple Music anmelden</translation>
    </message>
    <message>
        <source>Sign in to Apple Music</source>
        <translation>Bei Apple Music anmelden</translation>
    </message>
    <message>
        <source>One moment…</source>
        <translation>Einen Moment …</translation>
    </message>
    <message>
        <source>This page needs JavaScript. Turn it on and reload the page, or close this window.</source>
        <translation>Diese Seite braucht JavaScript. Schalte es ein und lade die Seite neu, oder schließe dieses Fenster.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Press “Sign In” and allow zelk to read your Apple Music library and playlists.</source>
        <translation>Drücke „Anmelden“ und erlaube zelk, deine Apple-Music-Mediathek und deine Playlists zu lesen.</translation>
    </message>
    <message>
        <source>Go on in the window that has opened.</source>
        <translation>Mach in dem Fenster weiter, das sich geöffnet hat.</translation>
    </message>
    <message>
        <source>You are signed in. You can close this window.</source>
        <translation>Du bist angemeldet. Du kannst dieses Fenster schließen.</translation>
    </message>
    <message>
        <source>The sign-in was cancelled. You can close this window.</source>
        <translation>Die Anmeldung wurde abgebrochen. Du kannst dieses Fenster schließen.</translation>
    </message>
    <message>
        <source>Signing in failed: %1. You can close this window.</source>
        <translation>Die Anmeldung ist fehlgeschlagen: %1. Du kannst dieses Fenster schließen.</translation>
    </message>
    <message>
        <source>Apple Music gave no access</source>
        <translation>Apple Music hat keinen Zugriff gegeben</translation>
    </message>
    <message>
        <source>the sign-in of Apple Music could not be loaded</source>
        <translation>die Anmeldung von Apple Music konnte nicht geladen werden</translation>
    </message>
    <message>
        <source>unknown error</source>
        <translation>unbekannter Fehler</translation>
    </message>
    <message>
        <source>zelk did not take the answer of this page. Close this window and connect again in zelk.</source>
        <translation>zelk hat die Antwort dieser Seite nicht angenommen. Schließe dieses Fenster und verbinde dich in zelk noch einmal.</translation>
    </message>
    <message>
        <source>zelk no longer waits for this page. Close this window and connect again in zelk.</source>
        <translation>zelk wartet nicht mehr auf diese Seite. Schließe dieses Fenster und verbinde dich in zelk noch einmal.</translation>
    </message>
</context>
<context>
    <name>MusicUserTokenProvider</name>
    <message>
        <source>The sign-in was cancelled.</source>
        <translation>Die Anmeldung wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Nobody signed in before the time was up.</source>
        <translation>Niemand hat sich rechtzeitig angemeldet.</translation>
    </message>
    <message>
        <source>The sign-in page could not be made ready: %1.</source>
        <translation>Die Seite für die Anmeldung konnte nicht bereitgestellt werden: %1.</translation>
    </message>
    <message>
        <source>No web browser could be opened.</source>
        <translation>Es ließ sich kein Browser öffnen.</translation>
    </message>
</context>
<context>
    <name>OrphansBanner</name>
    <message>
        <source>Leftover files</source>
        <translation>Übrig gebliebene Dateien</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb</translation>
    </message>
    <message>
        <source>Reveal in Finder</source>
        <translation>Im Finder zeigen</translation>
    </message>
</context>
<context>
    <name>OutputSettings</name>
    <message>
        <source>Download Folder</source>
        <translation>Download-Ordner</translation>
    </message>
    <message>
        <source>Not set</source>
        <translation>Nicht festgelegt</translation>
    </message>
    <message>
        <source>Folder is writable.</source>
        <translation>In den Ordner kann geschrieben werden.</translation>
    </message>
    <message>
        <source>Folder is not writable.</source>
        <translation>In den Ordner kann nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>OverallSummaryBar</name>
    <message>
        <source>Overall sync progress</source>
        <translation>Gesamtfortschritt des Syncs</translation>
    </message>
</context>
<context>
    <name>PermissionRow</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>PermissionsDialog</name>
    <message>
        <source>Permissions</source>
        <translation>Berechtigungen</translation>
    </message>
    <message>
        <source>What zelk may do on your behalf. A change counts from now on.</source>
        <translation>Was zelk für dich tun darf. Eine Änderung gilt ab sofort.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>PrepareToolsScreen</name>
    <message>
        <source>zelk needs a couple of small open-source tools (yt-dlp and ffmpeg) to download and convert audio.</source>
        <translation>zelk braucht ein paar kleine Open-Source-Werkzeuge (yt-dlp und ffmpeg), um Musik herunterzuladen und umzuwandeln.</translation>
    </message>
    <message>
        <source>All components are ready.</source>
        <translation>Alle Komponenten sind bereit.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
</context>
<context>
    <name>ProxySettings</name>
    <message>
        <source>Vantrix VPN</source>
        <translation>Vantrix VPN</translation>
    </message>
    <message>
        <source>Subscription URL</source>
        <translation>Abo-URL</translation>
    </message>
    <message>
        <source>Testing connection…</source>
        <translation>Verbindung wird getestet …</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Vergessen</translation>
    </message>
</context>
<context>
    <name>QualityBadge</name>
    <message>
        <source>Quality %1</source>
        <translation>Qualität %1</translation>
    </message>
</context>
<context>
    <name>QualitySettings</name>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Minimum quality floor</source>
        <translation>Mindestqualität</translation>
    </message>
    <message>
        <source>Lossless only</source>
        <translation>Nur verlustfrei</translation>
    </message>
    <message>
        <source>Prefer best available quality</source>
        <translation>Beste verfügbare Qualität bevorzugen</translation>
    </message>
    <message>
        <source>Upgrade existing files when better found</source>
        <translation>Vorhandene Dateien durch bessere ersetzen</translation>
    </message>
    <message>
        <source>Matching</source>
        <translation>Abgleich</translation>
    </message>
    <message>
        <source>Confirm each download is the right recording with MusicBrainz + AcoustID. More accurate, a little slower.</source>
        <translation>Prüft mit MusicBrainz + AcoustID, ob jeder Download die richtige Aufnahme ist. Genauer, aber etwas langsamer.</translation>
    </message>
    <message>
        <source>Verify matches with MusicBrainz + AcoustID</source>
        <translation>Treffer mit MusicBrainz + AcoustID prüfen</translation>
    </message>
    <message>
        <source>Strict — reject mismatched recordings</source>
        <translation>Streng – abweichende Aufnahmen verwerfen</translation>
    </message>
    <message>
        <source>AcoustID API key</source>
        <translation>AcoustID-API-Schlüssel</translation>
    </message>
</context>
<context>
    <name>RaisedShell</name>
    <message>
        <source>unknown</source>
        <comment>the reason of a failure</comment>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>RecapRow</name>
    <message>
        <source>Change…</source>
        <translation>Ändern …</translation>
    </message>
</context>
<context>
    <name>ReleaseNotesView</name>
    <message>
        <source>Release notes</source>
        <translation>Neuerungen</translation>
    </message>
</context>
<context>
    <name>ReviewActions</name>
    <message>
        <source>Skip</source>
        <translation>Überspringen</translation>
    </message>
    <message>
        <source>Use Selected</source>
        <translation>Auswahl verwenden</translation>
    </message>
    <message>
        <source>Use URL</source>
        <translation>URL verwenden</translation>
    </message>
    <message>
        <source>Accept Best</source>
        <translation>Besten Treffer nehmen</translation>
    </message>
</context>
<context>
    <name>ReviewContent</name>
    <message>
        <source>Previous</source>
        <translation>Vorheriger</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Nächster</translation>
    </message>
    <message>
        <source>Candidates</source>
        <translation>Kandidaten</translation>
    </message>
    <message>
        <source>No candidates returned. Paste a direct URL below to use instead.</source>
        <translation>Keine Kandidaten gefunden. Füge unten eine direkte URL ein, um sie stattdessen zu verwenden.</translation>
    </message>
    <message>
        <source>Or paste a direct URL</source>
        <translation>Oder füge eine direkte URL ein</translation>
    </message>
</context>
<context>
    <name>ReviewInspector</name>
    <message>
        <source>Review</source>
        <translation>Prüfung</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>All Caught Up</source>
        <translation>Alles erledigt</translation>
    </message>
    <message>
        <source>No matches need review.</source>
        <translation>Kein Treffer muss geprüft werden.</translation>
    </message>
</context>
<context>
    <name>RunSettings</name>
    <message>
        <source>Results per source: %1</source>
        <translation>Ergebnisse je Quelle: %1</translation>
    </message>
    <message>
        <source>Parallel downloads: %1</source>
        <translation>Gleichzeitige Downloads: %1</translation>
    </message>
    <message>
        <source>Search timeout: %1s</source>
        <translation>Zeitlimit der Suche: %1 s</translation>
    </message>
    <message>
        <source>Cool-off after a failure: %1h</source>
        <translation>Pause nach einem Fehler: %1 h</translation>
    </message>
</context>
<context>
    <name>SecretField</name>
    <message>
        <source>Hide %1</source>
        <translation>%1 ausblenden</translation>
    </message>
    <message>
        <source>Show %1</source>
        <translation>%1 anzeigen</translation>
    </message>
</context>
<context>
    <name>SettingsTabBar</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Accounts</source>
        <translation>Konten</translation>
    </message>
    <message>
        <source>Sources</source>
        <translation>Quellen</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Vantrix VPN</source>
        <translation>Vantrix VPN</translation>
    </message>
    <message>
        <source>Command Line</source>
        <translation>Befehlszeile</translation>
    </message>
    <message>
        <source>Diagnostics</source>
        <translation>Diagnose</translation>
    </message>
</context>
<context>
    <name>SetupScaffold</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Überspringen</translation>
    </message>
</context>
<context>
    <name>SidebarView</name>
    <message>
        <source>zelk</source>
        <translation>zelk</translation>
    </message>
    <message>
        <source>Filter playlists</source>
        <translation>Playlists filtern</translation>
    </message>
    <message>
        <source>Playlists</source>
        <translation>Playlists</translation>
    </message>
    <message>
        <source>Couldn&apos;t load playlists</source>
        <translation>Playlists konnten nicht geladen werden</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>No Playlists Yet</source>
        <translation>Noch keine Playlists</translation>
    </message>
    <message>
        <source>Connect Apple Music or Spotify to see your playlists here.</source>
        <translation>Verbinde Apple Music oder Spotify, um hier deine Playlists zu sehen.</translation>
    </message>
    <message>
        <source>Open Setup</source>
        <translation>Einrichtung öffnen</translation>
    </message>
    <message>
        <source>Loading playlists…</source>
        <translation>Playlists werden geladen …</translation>
    </message>
</context>
<context>
    <name>SourceBadge</name>
    <message>
        <source>Source %1</source>
        <translation>Quelle %1</translation>
    </message>
</context>
<context>
    <name>SourceOrderRow</name>
    <message>
        <source>Enable %1</source>
        <translation>%1 aktivieren</translation>
    </message>
</context>
<context>
    <name>SourceRow</name>
    <message>
        <source>Enable %1</source>
        <translation>%1 aktivieren</translation>
    </message>
</context>
<context>
    <name>SourceWarning</name>
    <message>
        <source>Continue without a playlist source?</source>
        <translation>Ohne Playlist-Quelle fortfahren?</translation>
    </message>
    <message>
        <source>zelk needs Apple Music or Spotify to find playlists to download. You can connect later in Settings — but there&apos;s nothing to sync until you do.</source>
        <translation>zelk braucht Apple Music oder Spotify, um Playlists zum Herunterladen zu finden. Du kannst sie später in den Einstellungen verbinden – bis dahin gibt es aber nichts zu synchronisieren.</translation>
    </message>
    <message>
        <source>Connect a Source</source>
        <translation>Quelle verbinden</translation>
    </message>
    <message>
        <source>Continue Anyway</source>
        <translation>Trotzdem fortfahren</translation>
    </message>
</context>
<context>
    <name>SourcesSettings</name>
    <message>
        <source>Download Sources</source>
        <translation>Download-Quellen</translation>
    </message>
    <message>
        <source>Enable the services zelk searches for audio, and drag to set priority — higher is tried first.</source>
        <translation>Aktiviere die Dienste, in denen zelk nach Musik sucht, und lege durch Ziehen ihre Reihenfolge fest – weiter oben wird zuerst probiert.</translation>
    </message>
    <message>
        <source>SoundCloud</source>
        <translation>SoundCloud</translation>
    </message>
    <message>
        <source>Optional — unlocks higher-quality (256 kbps) SoundCloud streams. Stored securely in your Keychain.</source>
        <translation>Optional – schaltet SoundCloud-Streams in höherer Qualität (256 kbps) frei. Wird sicher in deinem Schlüsselbund gespeichert.</translation>
    </message>
    <message>
        <source>SoundCloud OAuth token</source>
        <translation>SoundCloud-OAuth-Token</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Erweitert</translation>
    </message>
    <message>
        <source>Search and download tuning. The defaults suit most libraries.</source>
        <translation>Feineinstellung von Suche und Download. Die Vorgaben passen für die meisten Sammlungen.</translation>
    </message>
</context>
<context>
    <name>StepDots</name>
    <message>
        <source>Step %1 of %2</source>
        <translation>Schritt %1 von %2</translation>
    </message>
</context>
<context>
    <name>Stepper</name>
    <message>
        <source>Decrease %1</source>
        <translation>%1 verringern</translation>
    </message>
    <message>
        <source>Increase %1</source>
        <translation>%1 erhöhen</translation>
    </message>
</context>
<context>
    <name>SyncStore</name>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>Connecting to Vantrix VPN…</source>
        <translation>Verbindung mit Vantrix VPN …</translation>
    </message>
    <message>
        <source>Soulseek is routed through Vantrix VPN</source>
        <translation>Soulseek läuft über Vantrix VPN</translation>
    </message>
    <message>
        <source>Vantrix VPN disconnected — Soulseek is paused</source>
        <translation>Vantrix VPN getrennt – Soulseek pausiert</translation>
    </message>
    <message>
        <source>Vantrix VPN error — Soulseek is paused</source>
        <translation>Fehler bei Vantrix VPN – Soulseek pausiert</translation>
    </message>
    <message>
        <source>The sync was interrupted. Re-run Sync to continue safely.</source>
        <translation>Der Sync wurde unterbrochen. Starte ihn noch einmal, um sicher fortzufahren.</translation>
    </message>
</context>
<context>
    <name>ToolProgressRow</name>
    <message>
        <source>In progress</source>
        <translation>In Arbeit</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
</context>
<context>
    <name>ToolProvisioningStore</name>
    <message>
        <source>Some required tools could not be installed.</source>
        <translation>Einige benötigte Werkzeuge konnten nicht installiert werden.</translation>
    </message>
</context>
<context>
    <name>TrackColumnHeads</name>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>Interpret</translation>
    </message>
    <message>
        <source>Album</source>
        <translation>Album</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
</context>
<context>
    <name>TrackStatusCell</name>
    <message>
        <source>Retry</source>
        <translation>Nochmal</translation>
    </message>
    <message>
        <source>Interrupted</source>
        <translation>Unterbrochen</translation>
    </message>
</context>
<context>
    <name>TrackTable</name>
    <message>
        <source>Tracks</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Nochmal versuchen</translation>
    </message>
    <message>
        <source>Review…</source>
        <translation>Prüfen …</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Überspringen</translation>
    </message>
    <message>
        <source>Copy Title</source>
        <translation>Titel kopieren</translation>
    </message>
</context>
<context>
    <name>URLSession</name>
    <message>
        <source>The answer is too large.</source>
        <translation>Die Antwort ist zu groß.</translation>
    </message>
</context>
<context>
    <name>UpdateDialog</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>zelk can download the new one beside itself. Installing it is up to you.</source>
        <translation>zelk kann die neue Version neben sich ablegen. Installieren musst du sie selbst.</translation>
    </message>
    <message>
        <source>The package manager of this system installed zelk, and brings the new version too.</source>
        <translation>zelk wurde von der Paketverwaltung dieses Systems installiert, die auch die neue Version bringt.</translation>
    </message>
    <message>
        <source>zelk can&apos;t write to the folder that it is in. Get the new version where you got this one.</source>
        <translation>zelk kann nicht in den Ordner schreiben, in dem es liegt. Hol dir die neue Version dort, wo du diese her hast.</translation>
    </message>
    <message>
        <source>The Update Was Refused</source>
        <translation>Das Update wurde abgelehnt</translation>
    </message>
    <message>
        <source>The Update Server Can&apos;t Be Reached</source>
        <translation>Der Update-Server ist nicht erreichbar</translation>
    </message>
    <message>
        <source>The Update Failed</source>
        <translation>Das Update ist fehlgeschlagen</translation>
    </message>
    <message>
        <source>This Build Has No Updates</source>
        <translation>Für diese Fassung gibt es keine Updates</translation>
    </message>
    <message>
        <source>It doesn&apos;t name a place to get them from. Get a new version where you got this one.</source>
        <translation>Sie nennt keinen Ort, von dem Updates kommen. Hol dir eine neue Version dort, wo du diese her hast.</translation>
    </message>
    <message>
        <source>It leads to an address that isn&apos;t secure, so nothing was taken from there.</source>
        <translation>Es führt zu einer Adresse, die nicht sicher ist. Deshalb wurde von dort nichts übernommen.</translation>
    </message>
    <message>
        <source>There is no connection, or it broke. Check your network and try again.</source>
        <translation>Es gibt keine Verbindung, oder sie ist abgerissen. Prüfe dein Netzwerk und versuche es erneut.</translation>
    </message>
    <message>
        <source>The certificate of the update server can&apos;t be trusted, so nothing was taken from there.</source>
        <translation>Dem Zertifikat des Update-Servers ist nicht zu trauen. Deshalb wurde von dort nichts übernommen.</translation>
    </message>
    <message>
        <source>The update server answers with an error. Try again later.</source>
        <translation>Der Update-Server antwortet mit einem Fehler. Versuche es später erneut.</translation>
    </message>
    <message>
        <source>It doesn&apos;t answer. Try again later.</source>
        <translation>Er antwortet nicht. Versuche es später erneut.</translation>
    </message>
    <message>
        <source>What the update server sends is no list of updates. Try again later.</source>
        <translation>Was der Update-Server sendet, ist keine Liste von Updates. Versuche es später erneut.</translation>
    </message>
    <message>
        <source>What the update server sends is larger than it may be.</source>
        <translation>Was der Update-Server sendet, ist größer als erlaubt.</translation>
    </message>
    <message>
        <source>There is a new version, but its signature is missing or this build can&apos;t check it.</source>
        <translation>Es gibt eine neue Version, aber ihre Signatur fehlt, oder diese Fassung kann sie nicht prüfen.</translation>
    </message>
    <message>
        <source>The download isn&apos;t as long as announced. It has been deleted.</source>
        <translation>Der Download ist nicht so groß wie angekündigt. Er wurde gelöscht.</translation>
    </message>
    <message>
        <source>The signature of the download is wrong. It has been deleted.</source>
        <translation>Die Signatur des Downloads ist falsch. Er wurde gelöscht.</translation>
    </message>
    <message>
        <source>The download can&apos;t be written to the folder that zelk is in. Check that the disk has room.</source>
        <translation>Der Download kann nicht in den Ordner geschrieben werden, in dem zelk liegt. Prüfe, ob auf dem Laufwerk noch Platz ist.</translation>
    </message>
    <message>
        <source>Checking for Updates…</source>
        <translation>Suche nach Updates …</translation>
    </message>
    <message>
        <source>This takes a moment.</source>
        <translation>Das dauert einen Moment.</translation>
    </message>
    <message>
        <source>zelk Is Up to Date</source>
        <translation>zelk ist auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>You have version %1, the newest there is.</source>
        <translation>Du hast Version %1, die neueste, die es gibt.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>zelk %1 Is Available</source>
        <translation>zelk %1 ist verfügbar</translation>
    </message>
    <message>
        <source>You have version %1.</source>
        <translation>Du hast Version %1.</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Diese Version überspringen</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>Downloading zelk %1…</source>
        <translation>zelk %1 wird heruntergeladen …</translation>
    </message>
    <message>
        <source>Checking its signature…</source>
        <translation>Signatur wird geprüft …</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>zelk %1 Is Downloaded</source>
        <translation>zelk %1 ist heruntergeladen</translation>
    </message>
    <message>
        <source>Its signature is right. To install it, quit zelk and put it in the place of this version:</source>
        <translation>Die Signatur stimmt. Beende zum Installieren zelk und setze die neue Version an die Stelle dieser:</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>VPNToolbarControl</name>
    <message>
        <source>Vantrix VPN</source>
        <translation>Vantrix VPN</translation>
    </message>
    <message>
        <source>Turn Vantrix VPN Off</source>
        <translation>Vantrix VPN ausschalten</translation>
    </message>
    <message>
        <source>Turn Vantrix VPN On</source>
        <translation>Vantrix VPN einschalten</translation>
    </message>
    <message>
        <source>Test Connection…</source>
        <translation>Verbindung testen …</translation>
    </message>
</context>
<context>
    <name>WelcomeScreen</name>
    <message>
        <source>Turn your playlists into a DJ-ready library</source>
        <translation>Mach aus deinen Playlists eine auflegefertige Sammlung</translation>
    </message>
    <message>
        <source>zelk finds and downloads clean audio for the playlists you already love, then drops them straight into your djay library.</source>
        <translation>zelk findet zu deinen Lieblings-Playlists sauberes Audio, lädt es herunter und legt es direkt in deine djay-Bibliothek.</translation>
    </message>
    <message>
        <source>Connect Apple Music or Spotify</source>
        <translation>Apple Music oder Spotify verbinden</translation>
    </message>
    <message>
        <source>zelk downloads matching audio</source>
        <translation>zelk lädt passende Musik herunter</translation>
    </message>
    <message>
        <source>Auto-imports into your djay library</source>
        <translation>Automatischer Import in deine djay-Bibliothek</translation>
    </message>
</context>
<context>
    <name>ZELKCommands</name>
    <message>
        <source>Sync</source>
        <translation>Sync</translation>
    </message>
    <message>
        <source>Cancel Sync</source>
        <translation>Sync abbrechen</translation>
    </message>
    <message>
        <source>Refresh Library</source>
        <translation>Mediathek aktualisieren</translation>
    </message>
    <message>
        <source>Reveal Output Folder</source>
        <translation>Ausgabeordner zeigen</translation>
    </message>
    <message>
        <source>Review Matches</source>
        <translation>Treffer prüfen</translation>
    </message>
    <message>
        <source>zelk Help</source>
        <translation>zelk-Hilfe</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>About zelk</source>
        <translation>Über zelk</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>Ctrl+.</source>
        <translation>Ctrl+.</translation>
    </message>
    <message>
        <source>Ctrl+Shift+R</source>
        <translation>Ctrl+Shift+R</translation>
    </message>
    <message>
        <source>Ctrl+Alt+R</source>
        <translation>Ctrl+Alt+R</translation>
    </message>
    <message>
        <source>Ctrl+,</source>
        <translation>Ctrl+,</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
</context>
<context>
    <name>ZELKToolbar</name>
    <message>
        <source>Review low-confidence matches</source>
        <translation>Unsichere Treffer prüfen</translation>
    </message>
    <message>
        <source>Cancel the running sync (⌘.)</source>
        <translation>Laufenden Sync abbrechen (⌘.)</translation>
    </message>
    <message>
        <source>Sync the selected playlists (⌘R)</source>
        <translation>Ausgewählte Playlists synchronisieren (⌘R)</translation>
    </message>
</context>
<context>
    <name>zelk</name>
    <message>
        <source>Let zelk read your exported Music library?</source>
        <translation>Darf zelk deine exportierte Mediathek lesen?</translation>
    </message>
    <message>
        <source>It is the library that the Music app exports to %1, and the covers of its tracks. This is about what the application itself reads; nothing is changed.</source>
        <translation>Das ist die Mediathek, die die Musik-App nach %1 exportiert, und die Cover ihrer Titel. Es geht nur darum, was die Anwendung selbst liest; geändert wird nichts.</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Erlauben</translation>
    </message>
    <message>
        <source>Don&apos;t Allow</source>
        <translation>Nicht erlauben</translation>
    </message>
    <message>
        <source>Let zelk sign in to Apple Music?</source>
        <translation>Darf sich zelk bei Apple Music anmelden?</translation>
    </message>
    <message>
        <source>zelk asks its web service for a key, and your browser opens a page on which you allow zelk to read your Apple Music library and playlists.</source>
        <translation>zelk fragt seinen Webdienst nach einem Schlüssel, und dein Browser öffnet eine Seite, auf der du zelk erlaubst, deine Apple-Music-Mediathek und deine Playlists zu lesen.</translation>
    </message>
    <message>
        <source>Peer-to-peer lossless sharing — best quality (FLAC). No setup needed.</source>
        <translation>Verlustfreier Tausch von Nutzer zu Nutzer – beste Qualität (FLAC). Keine Einrichtung nötig.</translation>
    </message>
    <message>
        <source>Real FLAC for lossless tracks, straight from artists.</source>
        <translation>Echtes FLAC für verlustfreie Titel, direkt von den Künstlern.</translation>
    </message>
    <message>
        <source>Remixes and DJ edits. Add a token to unlock higher-quality (256 kbps) streams.</source>
        <translation>Remixe und DJ-Edits. Ein Token schaltet Streams in höherer Qualität (256 kbps) frei.</translation>
    </message>
    <message>
        <source>SoundCloud OAuth token (optional)</source>
        <translation>SoundCloud-OAuth-Token (optional)</translation>
    </message>
    <message>
        <source>The widest catalog, as a lossy last resort.</source>
        <translation>Der größte Katalog, als verlustbehafteter letzter Ausweg.</translation>
    </message>
    <message>
        <source>Best</source>
        <translation>Beste</translation>
    </message>
    <message>
        <source>Upgrade to lossless whenever it&apos;s available.</source>
        <translation>Wechselt zu verlustfrei, sobald es verfügbar ist.</translation>
    </message>
    <message>
        <source>Balanced</source>
        <translation>Ausgewogen</translation>
    </message>
    <message>
        <source>Keep 256k+/lossless; replace anything worse or missing.</source>
        <translation>Behält ab 256k/verlustfrei; ersetzt Schlechteres und Fehlendes.</translation>
    </message>
    <message>
        <source>Fast</source>
        <translation>Schnell</translation>
    </message>
    <message>
        <source>Accept the first decent match — fills your library quickly.</source>
        <translation>Nimmt den ersten brauchbaren Treffer – füllt deine Sammlung schnell.</translation>
    </message>
    <message>
        <source>Show zelk</source>
        <translation>zelk anzeigen</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Converting</source>
        <translation>Umwandlung</translation>
    </message>
    <message>
        <source>Tagging</source>
        <translation>Tagging</translation>
    </message>
    <message>
        <source>Verifying</source>
        <translation>Prüfung</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message numerus="yes">
        <source>%n review(s)</source>
        <translation>
            <numerusform>%n Prüfung</numerusform>
            <numerusform>%n Prüfungen</numerusform>
        </translation>
    </message>
    <message>
        <source>Apple Music (local)</source>
        <translation>Apple Music (lokal)</translation>
    </message>
    <message>
        <source>None yet</source>
        <translation>Noch keine</translation>
    </message>
    <message>
        <source>Playlist sources</source>
        <translation>Playlist-Quellen</translation>
    </message>
    <message>
        <source>Download sources</source>
        <translation>Download-Quellen</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Saved to</source>
        <translation>Gespeichert in</translation>
    </message>
    <message>
        <source>Getting things ready</source>
        <translation>Alles wird vorbereitet</translation>
    </message>
    <message>
        <source>Connect your music</source>
        <translation>Verbinde deine Musik</translation>
    </message>
    <message>
        <source>Choose where zelk reads your playlists. You can add more later in Settings.</source>
        <translation>Wähle, woher zelk deine Playlists liest. Weitere kannst du später in den Einstellungen hinzufügen.</translation>
    </message>
    <message>
        <source>Service setup</source>
        <translation>Dienste einrichten</translation>
    </message>
    <message>
        <source>Choose where zelk finds audio, and optionally route it through a VPN. The defaults work great.</source>
        <translation>Wähle, wo zelk Musik findet, und leite die Suche auf Wunsch durch ein VPN. Die Vorgaben passen bestens.</translation>
    </message>
    <message>
        <source>Quality &amp; downloads</source>
        <translation>Qualität &amp; Downloads</translation>
    </message>
    <message>
        <source>Choose where files are saved and your audio quality.</source>
        <translation>Wähle den Speicherort und die Audioqualität.</translation>
    </message>
    <message>
        <source>You&apos;re all set</source>
        <translation>Alles bereit</translation>
    </message>
    <message>
        <source>Turn your playlists into a DJ-ready library</source>
        <translation>Mach aus deinen Playlists eine auflegefertige Sammlung</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>Los geht’s</translation>
    </message>
    <message>
        <source>Start Using zelk</source>
        <translation>zelk starten</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 Prozent</translation>
    </message>
    <message>
        <source>Verifying…</source>
        <translation>Wird geprüft …</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>Wird installiert …</translation>
    </message>
    <message>
        <source>Installed</source>
        <translation>Installiert</translation>
    </message>
    <message>
        <source>Couldn&apos;t install</source>
        <translation>Installation fehlgeschlagen</translation>
    </message>
    <message numerus="yes">
        <source>%n leftover file(s) no longer in your playlists</source>
        <translation>
            <numerusform>%n übrig gebliebene Datei ohne Playlist</numerusform>
            <numerusform>%n übrig gebliebene Dateien ohne Playlist</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %n more file(s)…</source>
        <translation>
            <numerusform>und %n weitere Datei …</numerusform>
            <numerusform>und %n weitere Dateien …</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 need review</source>
        <translation>%1 zu prüfen</translation>
    </message>
    <message>
        <source>%1 failed</source>
        <translation>%1 Fehler</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Low confidence</source>
        <translation>Unsicher</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>Skipped</source>
        <translation>Übersprungen</translation>
    </message>
    <message>
        <source>Review %1 of %2</source>
        <translation>Prüfung %1 von %2</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Aktiviert</translation>
    </message>
    <message>
        <source>Not enabled</source>
        <translation>Nicht aktiviert</translation>
    </message>
    <message>
        <source>Grant Access</source>
        <translation>Zugriff gewähren</translation>
    </message>
    <message>
        <source>Denied</source>
        <translation>Abgelehnt</translation>
    </message>
    <message>
        <source>Open Settings…</source>
        <translation>Einstellungen öffnen …</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Testen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>A subscription URL is stored in your Keychain. Paste a new one to replace it. </source>
        <translation>In deinem Schlüsselbund ist eine Abo-URL gespeichert. Füge eine neue ein, um sie zu ersetzen. </translation>
    </message>
    <message>
        <source>Paste your VPN subscription URL. Stored securely in your Keychain. </source>
        <translation>Füge die Abo-URL deines VPNs ein. Sie wird sicher in deinem Schlüsselbund gespeichert. </translation>
    </message>
    <message>
        <source>Turn routing on or off from the VPN button in the toolbar. </source>
        <translation>Schalte die Umleitung mit der VPN-Taste in der Symbolleiste ein oder aus. </translation>
    </message>
    <message>
        <source>Soulseek is hard-stopped if the tunnel drops, so your IP is never exposed to peers.</source>
        <translation>Bricht der Tunnel ab, wird Soulseek sofort angehalten. So sehen andere deine IP-Adresse nie.</translation>
    </message>
    <message numerus="yes">
        <source>%n track(s)</source>
        <translation>
            <numerusform>%n Titel</numerusform>
            <numerusform>%n Titel</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2, %3 tracks</source>
        <translation>%1, %2, %3 Titel</translation>
    </message>
    <message>
        <source>Select all playlists in “%1”</source>
        <translation>Alle Playlists in „%1“ auswählen</translation>
    </message>
    <message>
        <source>Collapse %1</source>
        <translation>%1 zuklappen</translation>
    </message>
    <message>
        <source>Expand %1</source>
        <translation>%1 aufklappen</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Preparing…</source>
        <translation>Wird vorbereitet …</translation>
    </message>
    <message>
        <source>Syncing</source>
        <translation>Sync läuft</translation>
    </message>
    <message>
        <source>Finishing…</source>
        <translation>Wird abgeschlossen …</translation>
    </message>
    <message>
        <source>Complete</source>
        <translation>Abgeschlossen</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Interrupted</source>
        <translation>Unterbrochen</translation>
    </message>
    <message>
        <source>%1 done</source>
        <translation>%1 fertig</translation>
    </message>
    <message>
        <source>%1 on disk</source>
        <translation>%1 vorhanden</translation>
    </message>
    <message>
        <source>%1 flagged</source>
        <translation>%1 markiert</translation>
    </message>
    <message>
        <source>%1 skipped</source>
        <translation>%1 übersprungen</translation>
    </message>
    <message>
        <source>Up to date</source>
        <translation>Aktuell</translation>
    </message>
    <message>
        <source>%1 / %2 done</source>
        <translation>%1 / %2 fertig</translation>
    </message>
    <message numerus="yes">
        <source>%n playlist(s)</source>
        <translation>
            <numerusform>%n Playlist</numerusform>
            <numerusform>%n Playlists</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 not downloaded</source>
        <translation>%1 fehlen</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Leer</translation>
    </message>
    <message>
        <source>%1 progress</source>
        <translation>Fortschritt von %1</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>Checking disk</source>
        <translation>Wird gesucht</translation>
    </message>
    <message>
        <source>On disk</source>
        <translation>Vorhanden</translation>
    </message>
    <message>
        <source>Review</source>
        <translation>Prüfen</translation>
    </message>
    <message>
        <source>Needs review</source>
        <translation>Muss geprüft werden</translation>
    </message>
    <message numerus="yes">
        <source>%1 node(s)</source>
        <translation>
            <numerusform>%1 Knoten</numerusform>
            <numerusform>%1 Knoten</numerusform>
        </translation>
    </message>
    <message>
        <source>Connection test failed</source>
        <translation>Verbindungstest fehlgeschlagen</translation>
    </message>
    <message>
        <source>Connection test passed</source>
        <translation>Verbindungstest bestanden</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Vantrix VPN is off</source>
        <translation>Vantrix VPN ist aus</translation>
    </message>
    <message>
        <source>Testing connection…</source>
        <translation>Verbindung wird getestet …</translation>
    </message>
    <message>
        <source>Connecting to Vantrix VPN…</source>
        <translation>Verbindung mit Vantrix VPN …</translation>
    </message>
    <message>
        <source>Connected (%1)</source>
        <translation>Verbunden (%1)</translation>
    </message>
    <message>
        <source>Disconnected — Soulseek is paused</source>
        <translation>Getrennt – Soulseek pausiert</translation>
    </message>
    <message>
        <source>Connection error — Soulseek is paused</source>
        <translation>Verbindungsfehler – Soulseek pausiert</translation>
    </message>
    <message>
        <source>Testing…</source>
        <translation>Wird getestet …</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>zelk::CLIToolLogic</name>
    <message>
        <source>Installed</source>
        <translation>Installiert</translation>
    </message>
    <message>
        <source>Installed (update available)</source>
        <translation>Installiert (Update verfügbar)</translation>
    </message>
    <message>
        <source>Installed at %1</source>
        <translation>Installiert unter %1</translation>
    </message>
    <message>
        <source>Other copy at %1</source>
        <translation>Andere Kopie unter %1</translation>
    </message>
    <message>
        <source>Not installed</source>
        <translation>Nicht installiert</translation>
    </message>
    <message>
        <source>Broken link</source>
        <translation>Defekter Link</translation>
    </message>
    <message>
        <source>Checking…</source>
        <translation>Wird geprüft …</translation>
    </message>
</context>
<context>
    <name>zelk::ConnectMusicLogic</name>
    <message>
        <source>Connecting in your browser…</source>
        <translation>Verbindung im Browser …</translation>
    </message>
    <message>
        <source>Authorize zelk in your browser to read your Spotify playlists.</source>
        <translation>Erlaube zelk im Browser, deine Spotify-Playlists zu lesen.</translation>
    </message>
</context>
<context>
    <name>zelk::GeneralLogic</name>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
</context>
<context>
    <name>zelk::OutputLogic</name>
    <message>
        <source>Download Folder</source>
        <translation>Download-Ordner</translation>
    </message>
</context>
<context>
    <name>zelk::PermissionsLogic</name>
    <message>
        <source>Not decided yet</source>
        <translation>Noch nicht entschieden</translation>
    </message>
    <message>
        <source>Allowed</source>
        <translation>Erlaubt</translation>
    </message>
    <message>
        <source>Not allowed</source>
        <translation>Nicht erlaubt</translation>
    </message>
    <message>
        <source>Don&apos;t Allow</source>
        <translation>Nicht erlauben</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Erlauben</translation>
    </message>
    <message>
        <source>Read your exported Music library</source>
        <translation>Deine exportierte Mediathek lesen</translation>
    </message>
    <message>
        <source>The library that the Music app exports to %1, and the covers of its tracks. This is about what the application itself reads.</source>
        <translation>Die Mediathek, die die Musik-App nach %1 exportiert, und die Cover ihrer Titel. Es geht nur darum, was die Anwendung selbst liest.</translation>
    </message>
    <message>
        <source>Allowed, but there is no such file to read</source>
        <translation>Erlaubt, aber diese Datei gibt es nicht</translation>
    </message>
    <message>
        <source>Sign in to Apple Music</source>
        <translation>Bei Apple Music anmelden</translation>
    </message>
    <message>
        <source>In your browser, to read the playlists in your Apple Music library.</source>
        <translation>Im Browser, um die Playlists deiner Apple-Music-Mediathek zu lesen.</translation>
    </message>
</context>
<context>
    <name>zelk::PrepareToolsLogic</name>
    <message>
        <source>Check your internet connection, or install Homebrew from %1, then try again.</source>
        <translation>Prüfe deine Internetverbindung oder installiere Homebrew von %1 und versuche es dann erneut.</translation>
    </message>
</context>
<context>
    <name>zelk::QualityLogic</name>
    <message>
        <source>zelk will accept </source>
        <translation>zelk akzeptiert </translation>
    </message>
    <message>
        <source>only lossless FLAC</source>
        <translation>nur verlustfreies FLAC</translation>
    </message>
    <message>
        <source>320 kbps MP3 or better</source>
        <translation>MP3 mit 320 kbps oder besser</translation>
    </message>
    <message>
        <source>any quality</source>
        <translation>jede Qualität</translation>
    </message>
    <message>
        <source>, always preferring the highest available</source>
        <translation>, nimmt dabei immer die beste verfügbare Datei</translation>
    </message>
    <message>
        <source>, and re-download when a better copy appears</source>
        <translation> und lädt neu, wenn eine bessere Kopie auftaucht</translation>
    </message>
    <message>
        <source>FLAC (lossless)</source>
        <translation>FLAC (verlustfrei)</translation>
    </message>
    <message>
        <source>320 kbps MP3</source>
        <translation>MP3 mit 320 kbps</translation>
    </message>
    <message>
        <source>Any</source>
        <translation>Beliebig</translation>
    </message>
</context>
<context>
    <name>zelk::SetupChoices</name>
    <message>
        <source>Token</source>
        <translation>Token</translation>
    </message>
    <message>
        <source>Download location</source>
        <translation>Speicherort</translation>
    </message>
</context>
</TS>
