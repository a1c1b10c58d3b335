<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>QObject</name>
    <message>
        <source>Input command has insufficient arguments.</source>
        <comment>orvex error</comment>
        <translation>La commande saisie n&apos;a pas assez d&apos;arguments.</translation>
    </message>
    <message>
        <source>Input argument not recognized.</source>
        <comment>orvex error</comment>
        <translation>Argument de saisie non reconnu.</translation>
    </message>
    <message>
        <source>Subdirectory limit reached.</source>
        <comment>orvex error</comment>
        <translation>Limite de sous-répertoires atteinte.</translation>
    </message>
    <message>
        <source>Command is not authorized.</source>
        <comment>orvex error</comment>
        <translation>Commande non autorisée.</translation>
    </message>
    <message>
        <source>Improper command syntax.</source>
        <comment>orvex error</comment>
        <translation>Syntaxe de commande incorrecte.</translation>
    </message>
    <message>
        <source>Queue only allowed at lowest level.</source>
        <comment>orvex error</comment>
        <translation>Une file d&apos;attente n&apos;est autorisée qu&apos;au niveau le plus bas.</translation>
    </message>
    <message>
        <source>System error.</source>
        <comment>orvex error</comment>
        <translation>Erreur système.</translation>
    </message>
    <message>
        <source>Entry already exists.</source>
        <comment>orvex error</comment>
        <translation>L&apos;entrée existe déjà.</translation>
    </message>
    <message>
        <source>Entry no longer exists.</source>
        <comment>orvex error</comment>
        <translation>L&apos;entrée n&apos;existe plus.</translation>
    </message>
    <message>
        <source>Destination invalid.</source>
        <comment>orvex error</comment>
        <translation>Destination non valide.</translation>
    </message>
    <message>
        <source>Story currently being edited.</source>
        <comment>orvex error</comment>
        <translation>Le sujet est en cours de modification.</translation>
    </message>
    <message>
        <source>Story/directory/queue locked.</source>
        <comment>orvex error</comment>
        <translation>Le sujet, le répertoire ou la file d&apos;attente est verrouillé.</translation>
    </message>
    <message>
        <source>Queue is purge locked (purge/remove).</source>
        <comment>orvex error</comment>
        <translation>La file d&apos;attente est verrouillée contre la purge (purger/supprimer).</translation>
    </message>
    <message>
        <source>Queue is not empty.</source>
        <comment>orvex error</comment>
        <translation>La file d&apos;attente n&apos;est pas vide.</translation>
    </message>
    <message>
        <source>Invalid from current special mode.</source>
        <comment>orvex error</comment>
        <translation>Non valide dans le mode spécial actuel.</translation>
    </message>
    <message>
        <source>Can&apos;t find a keyword.</source>
        <comment>orvex error</comment>
        <translation>Impossible de trouver un mot-clé.</translation>
    </message>
    <message>
        <source>Queue doesn&apos;t allow batch operation.</source>
        <comment>orvex error</comment>
        <translation>La file d&apos;attente n&apos;autorise pas le traitement par lots.</translation>
    </message>
    <message>
        <source>No such user.</source>
        <comment>orvex error</comment>
        <translation>Cet utilisateur n&apos;existe pas.</translation>
    </message>
    <message>
        <source>User not logged in.</source>
        <comment>orvex error</comment>
        <translation>L&apos;utilisateur n&apos;est pas connecté.</translation>
    </message>
    <message>
        <source>User logged in (no message to send).</source>
        <comment>orvex error</comment>
        <translation>L&apos;utilisateur est connecté (aucun message à envoyer).</translation>
    </message>
    <message>
        <source>Read-only, no typing allowed.</source>
        <comment>orvex error</comment>
        <translation>Lecture seule, saisie impossible.</translation>
    </message>
    <message>
        <source>Could not open map story.</source>
        <comment>orvex error</comment>
        <translation>Impossible d&apos;ouvrir le sujet de correspondance.</translation>
    </message>
    <message>
        <source>No entry in map story.</source>
        <comment>orvex error</comment>
        <translation>Aucune entrée dans le sujet de correspondance.</translation>
    </message>
    <message>
        <source>User identification not accepted.</source>
        <comment>orvex error</comment>
        <translation>L&apos;identification de l&apos;utilisateur n&apos;est pas acceptée.</translation>
    </message>
    <message>
        <source>Directory or queue is empty.</source>
        <comment>orvex error</comment>
        <translation>Le répertoire ou la file d&apos;attente est vide.</translation>
    </message>
    <message>
        <source>Move converted to duplicate.</source>
        <comment>orvex error</comment>
        <translation>Le déplacement a été converti en duplication.</translation>
    </message>
    <message>
        <source>System offline message.</source>
        <comment>orvex error</comment>
        <translation>Message&#xa0;: le système est hors ligne.</translation>
    </message>
    <message>
        <source>Refresh mode on.</source>
        <comment>orvex error</comment>
        <translation>Le mode d&apos;actualisation est activé.</translation>
    </message>
    <message>
        <source>Print the message in the packet.</source>
        <comment>orvex error</comment>
        <translation>Afficher le message contenu dans le paquet.</translation>
    </message>
    <message>
        <source>Unable to send mail.</source>
        <comment>orvex error</comment>
        <translation>Impossible d&apos;envoyer le courrier.</translation>
    </message>
    <message>
        <source>Password requested was too short.</source>
        <comment>orvex error</comment>
        <translation>Le mot de passe demandé était trop court.</translation>
    </message>
    <message>
        <source>Batch MOVE, DUP, KILL partial failure.</source>
        <comment>orvex error</comment>
        <translation>Échec partiel de MOVE, DUP, KILL par lots.</translation>
    </message>
    <message>
        <source>Command in progress.</source>
        <comment>orvex error</comment>
        <translation>Commande en cours d&apos;exécution.</translation>
    </message>
    <message>
        <source>Database element name too long.</source>
        <comment>orvex error</comment>
        <translation>Le nom de l&apos;élément de base de données est trop long.</translation>
    </message>
    <message>
        <source>Queue is being ordered.</source>
        <comment>orvex error</comment>
        <translation>La file d&apos;attente est en cours de tri.</translation>
    </message>
    <message>
        <source>This name is being used for a group.</source>
        <comment>orvex error</comment>
        <translation>Ce nom est déjà utilisé pour un groupe.</translation>
    </message>
    <message>
        <source>Read-only wire story.</source>
        <comment>orvex error</comment>
        <translation>Dépêche en lecture seule.</translation>
    </message>
    <message>
        <source>Queue is up to date.</source>
        <comment>orvex error</comment>
        <translation>La file d&apos;attente est à jour.</translation>
    </message>
    <message>
        <source>No form for new story.</source>
        <comment>orvex error</comment>
        <translation>Aucun formulaire pour le nouveau sujet.</translation>
    </message>
    <message>
        <source>ZEKO syntax error on story save.</source>
        <comment>orvex error</comment>
        <translation>Erreur de syntaxe ZEKO à l&apos;enregistrement du sujet.</translation>
    </message>
    <message>
        <source>Open of old version for copying failed.</source>
        <comment>orvex error</comment>
        <translation>Impossible d&apos;ouvrir l&apos;ancienne version pour la copier.</translation>
    </message>
    <message>
        <source>No devices to monitor.</source>
        <comment>orvex error</comment>
        <translation>Aucun appareil à surveiller.</translation>
    </message>
    <message>
        <source>Queue doesn&apos;t allow batch print.</source>
        <comment>orvex error</comment>
        <translation>La file d&apos;attente n&apos;autorise pas l&apos;impression par lots.</translation>
    </message>
    <message>
        <source>Queue is production locked.</source>
        <comment>orvex error</comment>
        <translation>La file d&apos;attente est verrouillée pour la production.</translation>
    </message>
    <message>
        <source>The news system is offline.</source>
        <comment>nrcs login error</comment>
        <translation>Le système de rédaction est hors ligne.</translation>
    </message>
    <message>
        <source>Your client system is not part of the news system configuration.</source>
        <comment>nrcs login error</comment>
        <translation>Votre poste client ne fait pas partie de la configuration du système de rédaction.</translation>
    </message>
    <message>
        <source>Resource is not available. Please attempt to connect to a different server.</source>
        <comment>nrcs login error</comment>
        <translation>La ressource n&apos;est pas disponible. Essayez de vous connecter à un autre serveur.</translation>
    </message>
    <message>
        <source>The news system has run out of resources for new sessions.</source>
        <comment>nrcs login error</comment>
        <translation>Le système de rédaction n&apos;a plus de ressources pour de nouvelles sessions.</translation>
    </message>
    <message>
        <source>Your client system is not listed as authorized for connection to the news system.</source>
        <comment>nrcs login error</comment>
        <translation>Votre poste client ne figure pas parmi ceux qui sont autorisés à se connecter au système de rédaction.</translation>
    </message>
    <message>
        <source>Your client application version is incompatible with your selected News Server.  Please select another server.</source>
        <comment>nrcs login error</comment>
        <translation>La version de votre application cliente n&apos;est pas compatible avec le serveur de rédaction choisi. Choisissez un autre serveur.</translation>
    </message>
    <message>
        <source>Invalid user name or password.</source>
        <comment>nrcs login error</comment>
        <translation>Nom d&apos;utilisateur ou mot de passe incorrect.</translation>
    </message>
    <message>
        <source>News server not found.</source>
        <comment>nrcs login error</comment>
        <translation>Serveur de rédaction introuvable.</translation>
    </message>
    <message>
        <source>Unexpected error, code = x%1.</source>
        <comment>error message</comment>
        <translation>Erreur inattendue, code = x%1.</translation>
    </message>
</context>
<context>
    <name>Quire::DirectoryModel</name>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
</context>
<context>
    <name>Quire::QueueModel</name>
    <message>
        <source>Lock</source>
        <translation>Verrou</translation>
    </message>
    <message>
        <source>Words</source>
        <translation>Mots</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>Débit</translation>
    </message>
    <message>
        <source>Break</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Float</source>
        <translation>Flottant</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>Wire</source>
        <translation>Dépêche</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>Courrier</translation>
    </message>
    <message>
        <source>Queue</source>
        <translation>File d&apos;attente</translation>
    </message>
    <message>
        <source>Story</source>
        <translation>Sujet</translation>
    </message>
</context>
<context>
    <name>Quire::StoryFieldsModel</name>
    <message>
        <source>Field</source>
        <translation>Champ</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
</context>
</TS>
