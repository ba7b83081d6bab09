// Reads one digit string per line from the file named first and prints, per line, its reading
// by the read-vietnamese-number package (folder named second), with the conventions this
// engine uses: no unit word and "bốn" for a final four.
const fs = require('fs');
const path = require('path');
const reference = require(path.join(process.argv[3], 'node_modules', 'read-vietnamese-number'));
const config = new reference.ReadingConfig();
config.unit = [];
config.fourToneText = 'bốn';
config.oddText = 'lẻ';
const lines = fs.readFileSync(process.argv[2], 'utf8').split('\n').filter((l) => l.length > 0);
const out = lines.map((l) => reference.doReadNumber(l, config).replace(/\s+/g, ' ').trim());
process.stdout.write(out.join('\n') + '\n');
