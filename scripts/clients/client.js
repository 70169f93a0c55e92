// The rounds of tedious and of mssql. Usage: node client.js tedious|mssql PORT ROUND
const [name, port, round] = process.argv.slice(2);
const show = (...values) =>
  console.log(values.map(v => Buffer.isBuffer(v) ? '0x' + v.toString('hex') : v instanceof Date ? v.toISOString() : String(v)).join('\t'));
const rows20000 = 'SELECT TOP 20000 a.colid, b.name FROM syscolumns a, syscolumns b, syscolumns c';
const endless = 'SELECT a.colid FROM syscolumns a, syscolumns b, syscolumns c, syscolumns d';

async function tedious() {
  const {Connection, Request, TYPES} = require('tedious');
  const connect = password => new Promise((done, failed) => {
    const connection = new Connection({server: '127.0.0.1',
      authentication: {type: 'default', options: {userName: 'sa', password}},
      options: {port: Number(port), database: 'Clients', encrypt: false, trustServerCertificate: true, useUTC: true}});
    connection.connect(error => error ? failed(error) : done(connection));
  });
  const run = (connection, start, sql, prepare = () => {}) => new Promise((done, failed) => {
    const rows = [];
    const request = new Request(sql, error => error ? failed(error) : done(rows));
    request.on('row', columns => rows.push(columns.map(column => column.value)));
    prepare(request);
    start(connection, request);
  });
  const batch = (c, r) => c.execSqlBatch(r), sql = (c, r) => c.execSql(r), call = (c, r) => c.callProcedure(r);
  const connection = await connect('');
  if (round === 'login') show(await connect('wrong').then(() => 'let in', () => 'ok'));
  if (round === 'types') {
    for (const table of ['Strict', 'Loose']) show(...(await run(connection, batch, 'SELECT * FROM ' + table))[0]);
    show((await run(connection, batch, 'SELECT 1'))[0][0]);
  }
  if (round === 'rows') show((await run(connection, batch, rows20000)).length);
  if (round === 'cancel') {
    await run(connection, batch, endless, request => request.once('row', () => connection.cancel())).catch(() => {});
    show((await run(connection, batch, 'SELECT 7'))[0][0]);
  }
  const parameters = request => {
    request.addParameter('a', TYPES.Int, 5);
    request.addParameter('b', TYPES.NVarChar, "b'\u00e4");
  };
  if (round === 'parameters') show(...(await run(connection, sql, 'SELECT @a + 1, @b', parameters))[0]);
  if (round === 'prepared') {
    await new Promise((done, failed) => {
      const left = [5, 6];
      let request;
      const next = () => left.length ? connection.execute(request, {a: left.shift(), b: "b'\u00e4"}) : done();
      request = new Request('SELECT @a + 1, @b', error => error ? failed(error) : next());
      request.addParameter('a', TYPES.Int);
      request.addParameter('b', TYPES.NVarChar);
      request.on('row', columns => show(...columns.map(column => column.value)));
      request.on('prepared', next);
      connection.prepare(request);
    });
  }
  if (round === 'metadata') {
    const named = request => request.addParameter('table_name', TYPES.NVarChar, 'Strict');
    show((await run(connection, call, 'sp_columns', named)).length);
  }
  connection.close();
}

async function mssql() {
  const sql = require('mssql');
  const config = password => ({server: '127.0.0.1', port: Number(port), user: 'sa', password, database: 'Clients',
    options: {encrypt: false, trustServerCertificate: true}});
  const pool = await new sql.ConnectionPool(config('')).connect();
  const one = async text => Object.values((await pool.request().query(text)).recordset[0]);
  if (round === 'login')
    show(await new sql.ConnectionPool(config('wrong')).connect().then(() => 'let in', () => 'ok'));
  if (round === 'types') {
    for (const table of ['Strict', 'Loose']) show(...await one('SELECT * FROM ' + table));
    show((await one('SELECT 1 AS n'))[0]);
  }
  if (round === 'rows') show((await pool.request().query(rows20000)).recordset.length);
  if (round === 'cancel') {
    const request = pool.request();
    request.stream = true;
    request.once('row', () => request.cancel());
    await new Promise(done => { request.on('error', () => {}); request.on('done', done); request.query(endless); });
    show((await one('SELECT 7 AS n'))[0]);
  }
  if (round === 'parameters')
    show(...Object.values((await pool.request().input('a', sql.Int, 5).input('b', "b'\u00e4")
      .query('SELECT @a + 1 AS x, @b AS y')).recordset[0]));
  if (round === 'prepared') {
    const statement = new sql.PreparedStatement(pool).input('a', sql.Int).input('b', sql.NVarChar);
    await statement.prepare('SELECT @a + 1 AS x, @b AS y');
    for (const a of [5, 6]) show(...Object.values((await statement.execute({a, b: "b'\u00e4"})).recordset[0]));
    await statement.unprepare();
  }
  if (round === 'metadata')
    show((await pool.request().input('table_name', 'Strict').execute('sp_columns')).recordset.length);
  await pool.close();
}

({tedious, mssql})[name]().then(() => process.exit(0), error => { console.error(error); process.exit(1); });
