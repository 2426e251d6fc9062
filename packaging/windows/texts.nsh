; What setup and uninstaller say, in the languages of the system that have them, English elsewhere.
; ${TEXT} NAME ENGLISH GERMAN FRENCH

!macro text name english german french
  LangString ${name} ${LANG_ENGLISH} `${english}`
  LangString ${name} ${LANG_GERMAN} `${german}`
  LangString ${name} ${LANG_FRENCH} `${french}`
!macroend
!define TEXT "!insertmacro text"

; The last sentence of everything that was refused.
${TEXT} nothing_changed \
  "Nothing was changed." \
  "Es wurde nichts geändert." \
  "Rien n'a été modifié."
${TEXT} close_and_retry \
  "Ferrowen is running. Close it, then choose Retry." \
  "Ferrowen läuft noch. Beenden Sie es und wählen Sie dann „Wiederholen“." \
  "Ferrowen est en cours d'exécution. Fermez-le, puis choisissez « Réessayer »."
${TEXT} is_running \
  "Ferrowen is running. Close it and start the setup again. $(nothing_changed)" \
  "Ferrowen läuft noch. Beenden Sie es und starten Sie die Installation noch einmal. $(nothing_changed)" \
  "Ferrowen est en cours d'exécution. Fermez-le et relancez l'installation. $(nothing_changed)"
${TEXT} is_older \
  "Ferrowen $3 is installed, and this setup holds the older ${VERSION}. Remove the newer one first if you want to go back; your settings and maps stay. $(nothing_changed)" \
  "Ferrowen $3 ist installiert, und diese Installation enthält die ältere Version ${VERSION}. Entfernen Sie zuerst die neuere, wenn Sie zurückwollen; Ihre Einstellungen und Karten bleiben erhalten. $(nothing_changed)" \
  "Ferrowen $3 est installé, et ce programme contient la version ${VERSION}, plus ancienne. Supprimez d'abord la plus récente si vous voulez revenir en arrière ; vos réglages et vos cartes sont conservés. $(nothing_changed)"
${TEXT} is_elsewhere \
  "Ferrowen is installed in $earlier. Install it there, or remove it there first. $(nothing_changed)" \
  "Ferrowen ist in $earlier installiert. Installieren Sie es dort, oder entfernen Sie es dort zuerst. $(nothing_changed)" \
  "Ferrowen est installé dans $earlier. Installez-le à cet endroit, ou supprimez-le d'abord. $(nothing_changed)"
${TEXT} is_for_all \
  "Ferrowen is installed for all users, in $other. Install the new version for all users too, or remove the other one first. $(nothing_changed)" \
  "Ferrowen ist in $other für alle Benutzer installiert. Installieren Sie auch die neue Version für alle Benutzer, oder entfernen Sie die andere zuerst. $(nothing_changed)" \
  "Ferrowen est installé pour tous les utilisateurs, dans $other. Installez aussi la nouvelle version pour tous, ou supprimez d'abord l'autre. $(nothing_changed)"
${TEXT} is_for_me \
  "Ferrowen is installed for you alone, in $other. Install the new version for you alone too, or remove the other one first; your settings and maps stay. $(nothing_changed)" \
  "Ferrowen ist in $other nur für Sie installiert. Installieren Sie auch die neue Version nur für sich, oder entfernen Sie die andere zuerst; Ihre Einstellungen und Karten bleiben erhalten. $(nothing_changed)" \
  "Ferrowen est installé pour vous seul, dans $other. Installez aussi la nouvelle version pour vous seul, ou supprimez d'abord l'autre ; vos réglages et vos cartes sont conservés. $(nothing_changed)"
${TEXT} is_old_system \
  "Ferrowen needs Windows 10, version 1903, or a newer Windows. $(nothing_changed)" \
  "Ferrowen braucht Windows 10, Version 1903, oder ein neueres Windows. $(nothing_changed)" \
  "Ferrowen demande Windows 10, version 1903, ou un Windows plus récent. $(nothing_changed)"
${TEXT} is_not_writable \
  "The folder $INSTDIR cannot be written to. Choose another folder, or install for all users as an administrator. $(nothing_changed)" \
  "In den Ordner $INSTDIR kann nicht geschrieben werden. Wählen Sie einen anderen Ordner, oder installieren Sie als Administrator für alle Benutzer. $(nothing_changed)" \
  "Impossible d'écrire dans le dossier $INSTDIR. Choisissez un autre dossier, ou installez pour tous les utilisateurs en tant qu'administrateur. $(nothing_changed)"
; $2 and $3: megabytes.
${TEXT} is_too_full \
  "The disk is too full: Ferrowen needs $2 MB in $INSTDIR, and $3 MB are free. $(nothing_changed)" \
  "Der Datenträger ist zu voll: Ferrowen braucht $2 MB in $INSTDIR, und $3 MB sind frei. $(nothing_changed)" \
  "Le disque est trop plein : Ferrowen a besoin de $2 Mo dans $INSTDIR, et $3 Mo sont libres. $(nothing_changed)"
${TEXT} only_administrator \
  "Only an administrator can install for all users." \
  "Nur ein Administrator kann für alle Benutzer installieren." \
  "Seul un administrateur peut installer pour tous les utilisateurs."

${TEXT} users_title "Choose Users" "Benutzer auswählen" "Choix des utilisateurs"
${TEXT} users_question \
  "Who is going to use Ferrowen on this computer?" \
  "Wer wird Ferrowen auf diesem Computer benutzen?" \
  "Qui va utiliser Ferrowen sur cet ordinateur ?"
${TEXT} only_me "Only for &me" "Nur für &mich" "Pour &moi seulement"
${TEXT} only_me_folders \
  "Settings, scripts and maps are kept in the folder of the program." \
  "Einstellungen, Skripte und Karten liegen im Ordner des Programms." \
  "Les réglages, les scripts et les cartes restent dans le dossier du programme."
${TEXT} all_users \
  "For &all users of this computer (needs an administrator)" \
  "Für &alle Benutzer dieses Computers (braucht einen Administrator)" \
  "Pour &tous les utilisateurs de cet ordinateur (demande un administrateur)"
${TEXT} all_users_folders \
  "Each user's settings, scripts and maps are kept in a folder of his own." \
  "Einstellungen, Skripte und Karten liegen für jeden Benutzer in einem eigenen Ordner." \
  "Les réglages, les scripts et les cartes de chacun restent dans son propre dossier."

${TEXT} about_programs \
  "The window program, the command line, contour lines, the sample map and the guide." \
  "Das Fensterprogramm, die Befehlszeile, Höhenlinien, die Beispielkarte und die Anleitung." \
  "Le programme à fenêtres, la ligne de commande, les courbes de niveau, la carte d'exemple et le guide."
${TEXT} scripts "Open .auto scripts with Ferrowen" ".auto-Skripte mit Ferrowen öffnen" "Ouvrir les scripts .auto avec Ferrowen"
${TEXT} about_scripts \
  "A double click on an automation script opens it in Ferrowen." \
  "Ein Doppelklick auf ein Automatisierungsskript öffnet es in Ferrowen." \
  "Un double clic sur un script d'automatisation l'ouvre dans Ferrowen."
${TEXT} script_class "Ferrowen script" "Ferrowen-Skript" "Script Ferrowen"
${TEXT} link "Link on the desktop" "Verknüpfung auf dem Desktop" "Raccourci sur le bureau"
${TEXT} about_link \
  "Beside the entry of the start menu." \
  "Zusätzlich zum Eintrag im Startmenü." \
  "En plus de l'entrée du menu Démarrer."

${TEXT} not_put_back \
  "Not every file of the earlier version could be put back. They are in $INSTDIR\setup-old." \
  "Nicht jede Datei der früheren Version konnte zurückgelegt werden. Sie liegen in $INSTDIR\setup-old." \
  "Certains fichiers de la version précédente n'ont pas pu être remis en place. Ils sont dans $INSTDIR\setup-old."
${TEXT} not_written \
  "Not every file could be written to $INSTDIR. What was there before is as it was." \
  "Nicht jede Datei konnte nach $INSTDIR geschrieben werden. Was vorher da war, ist wie zuvor." \
  "Certains fichiers n'ont pas pu être écrits dans $INSTDIR. Ce qui s'y trouvait est resté tel quel."
${TEXT} no_list \
  "The list of the installed files is missing: $INSTDIR\${LIST_NAME}. Nothing was removed." \
  "Die Liste der installierten Dateien fehlt: $INSTDIR\${LIST_NAME}. Es wurde nichts entfernt." \
  "La liste des fichiers installés manque : $INSTDIR\${LIST_NAME}. Rien n'a été supprimé."
; $R9: one of them.
${TEXT} not_removed \
  "Not every file could be removed from $INSTDIR, $R9 among them. Close what uses them and remove Ferrowen once more." \
  "Nicht jede Datei konnte aus $INSTDIR entfernt werden, darunter $R9. Beenden Sie, was sie benutzt, und entfernen Sie Ferrowen noch einmal." \
  "Certains fichiers de $INSTDIR n'ont pas pu être supprimés, dont $R9. Fermez ce qui les utilise et supprimez Ferrowen encore une fois."
${TEXT} was_removed \
  "Ferrowen was removed. Your own settings, scripts, styles and maps are still in $INSTDIR." \
  "Ferrowen wurde entfernt. Ihre eigenen Einstellungen, Skripte, Stile und Karten liegen noch in $INSTDIR." \
  "Ferrowen a été supprimé. Vos réglages, scripts, styles et cartes sont toujours dans $INSTDIR."
