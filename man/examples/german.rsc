# ja, nein, abbrechen; the texts that name the letters follow
001 jna
035 (J/n/a: Enter bedeutet ja, a bricht ab)
013 Antworten Sie mit j oder n; Enter allein bedeutet ja. |

# a format: the product stands where %s does
075 Sollen auch alle anderen Benutzer Zugang zu '%s' haben?

# two lines on the screen, one line here
029 Enter allein: keine Produkte.\na: abbrechen.

299 \nEnde der Konfiguration.\n
